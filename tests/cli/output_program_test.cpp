// The built programs where their output cannot go, and file names that a shell, a terminal or a
// message could take for something else.
#include "cli/shell_word.h"
#include "program_run.h"
#include "test_class.h"

#include <QTemporaryDir>
#include <QtTest>

#include <sys/stat.h>

#include <memory>

namespace
{

constexpr std::uint32_t kKibi = 1024;

} // namespace

class OutputProgramTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_folder->isValid());
        m_image = mbc5Image(512 * kKibi, 32 * kKibi);
        putFile(path("cart.gb"), m_image);
    }

    void fullDiskBehindTheAnswerIsAFailure_data()
    {
        QTest::addColumn<QString>("command");
        QTest::newRow("help") << "--help";
        QTest::newRow("version") << "--version";
        QTest::newRow("manual") << "manual";
        QTest::newRow("completion") << "completion bash";
        QTest::newRow("info") << "info --quick";
        QTest::newRow("info, JSON") << "info --quick --json";
        QTest::newRow("drives") << "drives";
        QTest::newRow("verify") << "verify cart.gb";
        QTest::newRow("scripts") << "scripts";
    }
    void fullDiskBehindTheAnswerIsAFailure()
    {
        QFETCH(QString, command);
        const ProgramResult well = inShell("exec CLI " + command);
        QVERIFY2(well.exitCode == 0 || well.exitCode == 10, qPrintable(well.err));
        const ProgramResult result = inShell("exec CLI " + command + " >/dev/full");
        QVERIFY2(codeOf(result) == ExitCode::FileError, qPrintable(result.err));
        QVERIFY2(result.err.contains("The answer could not be written: No space left on device\n"),
                 qPrintable(result.err));
    }

    // A closed descriptor is given to the next file that is opened.
    void closedStreamsReachNoFile_data()
    {
        QTest::addColumn<QString>("closed");
        QTest::addColumn<ExitCode>("code");
        QTest::newRow("input") << "0<&-" << ExitCode::Done;
        QTest::newRow("output") << "1>&-" << ExitCode::FileError;
        QTest::newRow("errors") << "2>&-" << ExitCode::Done;
        QTest::newRow("output and errors") << "1>&- 2>&-" << ExitCode::FileError;
        QTest::newRow("all") << "0<&- 1>&- 2>&-" << ExitCode::FileError;
    }
    void closedStreamsReachNoFile()
    {
        QFETCH(QString, closed);
        const ProgramResult result =
            inShell("exec CLI dump dump.gb --system gb --mapper mbc5 --rom-size 512K " + closed);
        QTEST(codeOf(result), "code");
        QVERIFY(contentOf(path("dump.gb")) == m_image);
        QCOMPARE(QDir(path(".")).entryList(QDir::Files), QStringList({"cart.gb", "dump.gb"}));
    }

    void shellsTakeWordsAsTheyAre_data()
    {
        QTest::addColumn<QString>("shell");
        QTest::addColumn<QString>("name");
        for (const char *name :
             {"plain.sav", "a b", "it's", "''", "$(touch PWN)", "`touch PWN`", "$HOME \\ \"x\"",
              "a;b&c|d>e<f", "*?[a]", "-n", "~", "%1 %n", "\u30dd\u30b1"}) {
            QTest::addRow("sh, %s", name) << "sh" << QString::fromUtf8(name);
            QTest::addRow("bash, %s", name) << "bash" << QString::fromUtf8(name);
        }
        for (const char *name : {"a\nb", "\033[2J", "tab\t'quoted'\\n", "\u202egnp.sav", "\x7f"})
            QTest::addRow("bash, control %d", name[0]) << "bash" << QString::fromUtf8(name);
    }
    void shellsTakeWordsAsTheyAre()
    {
        QFETCH(QString, shell);
        QFETCH(QString, name);
        const ProgramResult result =
            runProgram(shell, QStringList({"-c", "printf %s " + posixWord(name)}));
        QCOMPARE(result.exitCode, 0);
        QCOMPARE(result.out, name);
    }

    // The name of the backup has the title in it, whatever that holds.
    void printedCommandPutsTheSaveBack()
    {
        const virtual_reader::GbImageSpec spec{0x1B, 64 * kKibi, 32 * kKibi, "IT'S $(TOUCH)", 1};
        putFile(path("cart.gb"), toByteArray(::gbImage(spec)));
        const QByteArray old = noise(32 * kKibi, 1);
        putFile(path("chip.sav"), old);
        putFile(path("new.sav"), noise(32 * kKibi, 2));
        const QString reader = "cart=" + path("cart.gb") + ",save=" + path("chip.sav");

        const ProgramResult failed =
            inShell("exec CLI write-ram new.sav --backup kept", reader + ",fail-command=26");
        QCOMPARE(codeOf(failed), ExitCode::TransferFailed);
        QVERIFY(contentOf(path("chip.sav")) != old);
        const QString said = "To put it back:\n  gbdriver-cli ";
        QVERIFY2(failed.err.contains(said), qPrintable(failed.err));
        const QString command = failed.err.section(said, 1).section('\n', 0, 0);
        QVERIFY2(command.contains("S $(TOUCH)"), qPrintable(command));
        const ProgramResult restored = inShell("TOUCH() { touch PWN; }; CLI " + command, reader);
        QVERIFY2(codeOf(restored) == ExitCode::Done, qPrintable(restored.err));
        QVERIFY(contentOf(path("chip.sav")) == old);
        QVERIFY(!QFile::exists(path("PWN")));
    }

    // What a pipe or a device gives may never come, or never end.
    void inputsWithoutAnEndAreRefused_data()
    {
        QTest::addColumn<QString>("command");
        for (const char *input : {"pipe", "/dev/zero"}) {
            for (const char *command :
                 {"verify %1", "verify cart.gb --dat %1", "write-ram %1", "flash %1"})
                QTest::addRow("%s, %s", command, input) << QString(command).arg(input);
        }
    }
    void inputsWithoutAnEndAreRefused()
    {
        QFETCH(QString, command);
        QCOMPARE(::mkfifo(QFile::encodeName(path("pipe")).constData(), 0600), 0);
        const ProgramResult result = inShell("exec CLI " + command);
        QCOMPARE(codeOf(result), ExitCode::FileError);
        QVERIFY2(result.err.contains("it is no ordinary file"), qPrintable(result.err));
    }

    // Messages are put together from parts; a part is never taken for a place of another.
    void namesWithPlaceholdersAreSaid_data()
    {
        QTest::addColumn<QString>("command");
        QTest::newRow("verify") << "verify NAME";
        QTest::newRow("verify, missing") << "verify NAME.missing";
        QTest::newRow("DAT file") << "verify cart.gb --dat NAME";
        QTest::newRow("save of another size")
            << "write-ram NAME --system gb --mapper mbc5 --ram-size 32K";
        QTest::newRow("dump into a missing folder") << "dump NAME.folder/x";
        QTest::newRow("file there already") << "dump NAME";
        QTest::newRow("backup into a file") << "backup NAME";
        QTest::newRow("script, missing") << "check-script NAME.missing --mapper mbc5";
        QTest::newRow("unknown command") << "NAME";
        QTest::newRow("unknown option") << "verify cart.gb --NAME";
    }
    void namesWithPlaceholdersAreSaid()
    {
        QFETCH(QString, command);
        const QString name = "%2%1 %3%L1";
        putFile(path(name), m_image.left(1000));
        const ProgramResult result =
            inShell("exec CLI " + command.replace("NAME", posixWord(name)));
        QVERIFY2((result.out + result.err).contains(name), qPrintable(result.out + result.err));
    }

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }

    // With the cartridge in the program and the folder of the files as the current one.
    ProgramResult inShell(const QString &command) const
    {
        return inShell(command, "cart=" + path("cart.gb"));
    }
    ProgramResult inShell(QString command, const QString &reader) const
    {
        command.replace("CLI", posixWord(CLI_PROGRAM));
        return runProgram("sh", {"-c", "cd " + posixWord(m_folder->path()) + " && " + command},
                          {reader, ""});
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    QByteArray m_image;
};

Q_DECLARE_METATYPE(ExitCode)

GBDRIVER_TEST(OutputProgramTest, core)
#include "output_program_test.moc"
