// The built program and what its files may be named or be: links, pipes, devices, folders that take
// none, disks that are full, bytes that are no text; and what a killed program leaves behind.
#include "program_run.h"
#include "test_class.h"

#include <QDir>
#include <QTemporaryDir>
#include <QtTest>

#include <fcntl.h>
#include <future>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

constexpr int kExists = static_cast<int>(ExitCode::Refused);
constexpr int kFile = static_cast<int>(ExitCode::FileError);
constexpr int kDone = static_cast<int>(ExitCode::Done);
const QByteArray kOld = "old content";

} // namespace

class OutputTargetTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_image = mbc5Image(64 * 1024, 8 * 1024);
        putFile(path("cart.gb"), m_image);
        QVERIFY(QDir(m_folder->path()).mkdir("folder"));
        putFile(path("file"), kOld);
        putFile(path("folder/target"), kOld);
        link("folder/target", "link");
        link("folder/new", "dangling");
        link("folder", "link to a folder");
        link("missing/new", "link into nowhere");
    }

    void targetGetsTheDumpOrStaysAsItWas_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("overwrites");
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("written"); // empty: nothing
        for (const bool overwrites : {false, true}) {
            const auto row = [overwrites](const char *name, int code, const char *written) {
                QTest::addRow("%s%s", name, overwrites ? ", overwriting" : "")
                    << name << overwrites << code << written;
            };
            row("new", kDone, "new");
            row("file", overwrites ? kDone : kExists, overwrites ? "file" : "");
            row("link", overwrites ? kDone : kExists, overwrites ? "folder/target" : "");
            row("dangling", kDone, "folder/new");
            row("link to a folder", kFile, "");
            row("link into nowhere", kFile, "");
            row("folder", kFile, "");
            row("missing/new", kFile, "");
            row("/proc/new", kFile, "");
            row("/dev/null", kDone, "");
        }
    }
    void targetGetsTheDumpOrStaysAsItWas()
    {
        QFETCH(QString, name);
        QFETCH(bool, overwrites);
        QFETCH(int, code);
        QFETCH(QString, written);
        const QString target = name.startsWith('/') ? name : path(name);
        const bool isLink = QFileInfo(target).isSymLink();
        QStringList arguments{"dump", target};
        if (overwrites)
            arguments << "--overwrite";
        const ProgramResult result = runProgram(CLI_PROGRAM, arguments, reader());
        QVERIFY2(result.exitCode == code, qPrintable(result.err));
        QCOMPARE(QFileInfo(target).isSymLink(), isLink);
        if (!written.isEmpty())
            QVERIFY(contentOf(path(written)) == m_image);
        for (const char *kept : {"file", "folder/target"})
            QVERIFY(written == kept || contentOf(path(kept)) == kOld);
        QCOMPARE(leftovers(), QStringList());
        QCOMPARE(result.err.contains("Start dump"), code == kDone);
    }

    void pipeGetsTheDump()
    {
        const QByteArray pipe = QFile::encodeName(path("pipe"));
        QCOMPARE(::mkfifo(pipe.constData(), 0600), 0);
        auto content = std::async(std::launch::async, [this] { return contentOf(path("pipe")); });
        const ProgramResult result =
            runProgram(CLI_PROGRAM, QStringList{"dump", path("pipe")}, reader());
        QVERIFY2(result.exitCode == kDone, qPrintable(result.err));
        QVERIFY(content.get() == m_image);
    }

    // Nothing but the dump.
    void standardOutputGetsTheDump_data()
    {
        QTest::addColumn<QString>("command");
        QTest::newRow("pipe") << "\"$0\" dump /dev/stdout | cat > \"$1\"";
        QTest::newRow("file") << "\"$0\" dump /dev/stdout > \"$1\"";
        QTest::newRow("JSON") << "\"$0\" dump /dev/stdout --json > \"$1\"";
        QTest::newRow("descriptor") << "\"$0\" dump /dev/fd/3 3> \"$1\"";
    }
    void standardOutputGetsTheDump()
    {
        QFETCH(QString, command);
        const ProgramResult result = shell(command, path("out"));
        QVERIFY2(result.exitCode == kDone, qPrintable(result.err));
        QVERIFY(contentOf(path("out")) == m_image);
    }

    // The shell's limit plays the disk: the blocks of ulimit are of 512 or 1024 bytes.
    void fullDiskIsToldBeforeTheRead_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("new") << "new";
        QTest::newRow("existing") << "file";
        QTest::newRow("link") << "link";
    }
    void fullDiskIsToldBeforeTheRead()
    {
        QFETCH(QString, name);
        const ProgramResult result =
            shell("ulimit -f 8; exec \"$0\" dump \"$1\" --overwrite", path(name));
        QVERIFY2(result.exitCode == kFile, qPrintable(result.err));
        QVERIFY2(!result.err.contains("Start dump"), qPrintable(result.err));
        QCOMPARE(contentOf(path("file")), kOld);
        QCOMPARE(contentOf(path("folder/target")), kOld);
        QVERIFY(!QFile::exists(path("new")));
        QCOMPARE(leftovers(), QStringList());
    }

    void fullBackupFolderIsToldBeforeTheRead()
    {
        putFile(path("new.sav"), QByteArray(8 * 1024, 's'));
        const ProgramResult result = shell(
            "ulimit -f 4; exec \"$0\" write-ram \"$1/new.sav\" --backup \"$1/folder\"", path(""));
        QVERIFY2(result.exitCode == kFile, qPrintable(result.err));
        QVERIFY2(result.err.contains("Nothing was written"), qPrintable(result.err));
        QVERIFY2(!result.err.contains("Start dump"), qPrintable(result.err));
        QCOMPARE(leftovers(), QStringList());
    }

    void nameThatIsNoTextIsRefused()
    {
        const ProgramResult result =
            shell("exec \"$0\" dump \"$1/$(printf 'bad\\377.gb')\"", m_folder->path());
        QCOMPARE(result.exitCode, static_cast<int>(ExitCode::Usage));
        QVERIFY2(result.err.contains("argument 2 is no text"), qPrintable(result.err));
        QCOMPARE(QDir(m_folder->path()).entryList({"bad*"}), QStringList());
    }

    void longestNameIsWritten()
    {
        const QString name = QString(252, 'n') + ".gb";
        QVERIFY(name.size() == 255);
        QCOMPARE(runProgram(CLI_PROGRAM, QStringList{"dump", path(name)}, reader()).exitCode,
                 kDone);
        QVERIFY(contentOf(path(name)) == m_image);
        const ProgramResult result =
            runProgram(CLI_PROGRAM, QStringList{"dump", path(name + "x")}, reader());
        QCOMPARE(result.exitCode, kFile);
        QVERIFY(!result.err.contains("Start dump"));
        QCOMPARE(leftovers(), QStringList());
    }

    void killedProgramIsTidiedBehind()
    {
        const QString left = path("folder/target.gbdriver-1.part");
        putFile(left, m_image.left(1000));
        putFile(path("folder/other.part"), "another program's");
        const ProgramResult next = runProgram(
            CLI_PROGRAM, QStringList{"dump", path("folder/target"), "--overwrite"}, reader());
        QCOMPARE(next.exitCode, kDone);
        QVERIFY2(next.err.contains("Left by a program that was ended: " + left),
                 qPrintable(next.err));
        QVERIFY(QFile::exists(left)); // never in silence
        const ProgramResult tidied = runProgram(CLI_PROGRAM, QStringList{"tidy", path("folder")});
        QCOMPARE(tidied.exitCode, kDone);
        QCOMPARE(tidied.out, "removed: " + left + "\n");
        QCOMPARE(QDir(path("folder")).entryList(QDir::Files),
                 QStringList({"other.part", "target"}));
        QCOMPARE(runProgram(CLI_PROGRAM, QStringList{"tidy", path("folder")}).out,
                 "Nothing was left behind in " + path("folder") + ".\n");
    }

    void fileInUseIsNotTidied()
    {
        const QByteArray used = QFile::encodeName(path("folder/a.gb.gbdriver-1.part"));
        const int file = ::open(used.constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
        QCOMPARE(::flock(file, LOCK_EX), 0);
        const ProgramResult tidied = runProgram(CLI_PROGRAM, QStringList{"tidy", path("folder")});
        ::close(file);
        QCOMPARE(tidied.exitCode, kFile);
        QVERIFY2(tidied.err.contains("is in use"), qPrintable(tidied.err));
        QVERIFY(QFile::exists(path("folder/a.gb.gbdriver-1.part")));
        QCOMPARE(runProgram(CLI_PROGRAM, QStringList{"tidy", path("missing")}).exitCode, kFile);
    }

    // Whenever it is killed: the old file, or the new one.
    void killedDumpLeavesOldOrNew()
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("GBDRIVER_VIRTUAL_READER", reader().virtualReader);
        for (int kill = 0; kill < 25; ++kill) {
            putFile(path("file"), kOld);
            QProcess program;
            program.setProcessEnvironment(environment);
            program.start(CLI_PROGRAM, {"dump", path("file"), "--overwrite"});
            QVERIFY(program.waitForStarted());
            program.waitForFinished(4 * kill + 1);
            program.kill();
            program.waitForFinished();
            const QByteArray found = contentOf(path("file"));
            QVERIFY2(found == kOld || found == m_image, qPrintable(QString::number(found.size())));
        }
        const ProgramResult tidied = runProgram(CLI_PROGRAM, QStringList{"tidy", path("")});
        QCOMPARE(tidied.exitCode, kDone);
        QCOMPARE(leftovers(), QStringList());
    }

private:
    QString path(const QString &name) const
    {
        return name.isEmpty() ? m_folder->path() : m_folder->filePath(name);
    }
    void link(const char *target, const char *name) const
    {
        QCOMPARE(::symlink(target, QFile::encodeName(path(name)).constData()), 0);
    }
    ReaderChoice reader() const { return {"cart=" + path("cart.gb"), ""}; }

    // `command` with the program as $0 and `argument` as $1.
    ProgramResult shell(const QString &command, const QString &argument) const
    {
        return runProgram("/bin/sh", QStringList{"-c", command, CLI_PROGRAM, argument}, reader());
    }

    QStringList leftovers() const
    {
        const QStringList filter{"*.part", "*.unverified"};
        return QDir(path("")).entryList(filter) + QDir(path("folder")).entryList(filter);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    QByteArray m_image;
};

GBDRIVER_TEST(OutputTargetTest, core)
#include "output_target_test.moc"
