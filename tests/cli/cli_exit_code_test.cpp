// Every exit code of the built program, and what is left on the computer in each case: no temporary
// file, and what stood under the name before unless it was to be replaced.
#include "program_run.h"
#include "test_class.h"

#include <QDir>
#include <QDirIterator>
#include <QOperatingSystemVersion>
#include <QProcess>
#include <QSet>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>
#include <memory>

namespace
{

constexpr int kStepMs = 60000;
constexpr std::uint32_t kKibi = 1024;
constexpr std::uint32_t kRomSize = 64 * kKibi;
constexpr std::uint32_t kRamSize = 32 * kKibi;
constexpr int kDriverFileSize = 64 * 1024;
constexpr int kShortRead = 0x6000;
const char kAllSaid[] = " --no-auto --system gb --mapper mbc5 --rom-size 64K";

// What the name FILE stands for before and after a run.
const QByteArray kNoFile;
const QByteArray kOld = "old";
const QByteArray kRom = "the cartridge's ROM";
const QByteArray kSave = "the cartridge's save";

// Sends nothing that reads all banks, so that the bytes are not where they belong.
const char kHalfScript[] = "function cpu_dump(dev, size, _) { cpu_read(dev, 0, 0x4000); }\n";

} // namespace

Q_DECLARE_METATYPE(ExitCode)

class CliExitCodeTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void codeSaysHowItEnded_data();
    void codeSaysHowItEnded();
    void everyCodeHasARow();
#ifndef Q_OS_WIN // there is no signal to send to a program there
    void interruptedRunIsCancelled();
#endif

private:
    // Names of files that a row uses, put into the text.
    QString filledIn(QString text) const;
    QString path(const QString &name) const
    {
        return m_folder->filePath(name);
    }
    static bool canDeclareDrives();
    void makeReaderFolder(const QString &name, int dataSize);
    QStringList temporaryFiles() const;

    std::unique_ptr<QTemporaryDir> m_folder;
    QByteArray m_image;
    QByteArray m_save;
    QSet<int> m_codesSeen;
};

void CliExitCodeTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
    m_image = mbc5Image(kRomSize, kRamSize);
    m_save = noise(kRamSize, 1);
    QVERIFY(writeFile(path("cart.gb"), m_image));
    QVERIFY(writeFile(path("cart.gba"), gbaImage("ALXP", 4096 * kKibi)));
    QVERIFY(writeFile(path("tama5.gb"), gbImage(0xFD, kRomSize, 0)));
    QVERIFY(writeFile(path("kept.sav"), m_save));
    QVERIFY(writeFile(path("new.sav"), noise(kRamSize, 2)));
    QVERIFY(writeFile(path("short.sav"), noise(kRamSize - 1, 2)));
    QVERIFY(writeFile(path("gb_mbc0.nut"), kHalfScript));
    QVERIFY(writeFile(path("gb_mbc1.nut"), "function cpu_dump(\n"));
    makeReaderFolder("short", kShortRead);
    makeReaderFolder("mute", 0x8000);
    QVERIFY(QDir(path("mute")).mkdir("CMD.CMD"));
}

// On Windows a folder is no drive; cli_faulty_reader_test has these faults on a real one.
bool CliExitCodeTest::canDeclareDrives()
{
    return QOperatingSystemVersion::currentType() != QOperatingSystemVersion::Windows;
}

// A drive that is no reader but has its files.
void CliExitCodeTest::makeReaderFolder(const QString &name, int dataSize)
{
    QVERIFY(QDir(path("")).mkdir(name));
    QVERIFY(writeFile(path(name + "/K-DRIVER.DMP"), QByteArray(kDriverFileSize, '\0')));
    QVERIFY(writeFile(path(name + "/DUMP.ROM"), noise(static_cast<std::uint32_t>(dataSize), 3)));
}

QString CliExitCodeTest::filledIn(QString text) const
{
    return text.replace("DIR", m_folder->path()).replace("FILE", path("file"));
}

QStringList CliExitCodeTest::temporaryFiles() const
{
    QStringList found;
    QDirIterator files(m_folder->path(), {"*.part"}, QDir::Files | QDir::Hidden,
                       QDirIterator::Subdirectories);
    while (files.hasNext())
        found << files.next();
    return found;
}

void CliExitCodeTest::codeSaysHowItEnded_data()
{
    QTest::addColumn<ExitCode>("code");
    QTest::addColumn<QString>("reader"); // parts of the virtual one, or drives
    QTest::addColumn<QString>("words");
    QTest::addColumn<QByteArray>("before"); // what FILE holds
    QTest::addColumn<QByteArray>("after");
    const auto add = [](ExitCode code, const char *name, const char *reader, const QString &words,
                        const QByteArray &before = kNoFile, const QByteArray &after = kNoFile) {
        QTest::addRow("%d %s", static_cast<int>(code), name)
            << code << QString(reader) << words << before << after;
    };
    const char kCart[] = "cart=DIR/cart.gb,save=DIR/kept.sav";
    const char kBad[] = "cart=DIR/cart.gb,flaky=3";
    const char kGba[] = "cart=DIR/cart.gba";
    const char kEmpty[] = "cart=none";
    const char kFlash[] = "cart=DIR/cart.gb,flash=8";

    add(ExitCode::Done, "info", kCart, "info");
    add(ExitCode::Done, "dump", kCart, "dump FILE", kNoFile, kRom);
    add(ExitCode::Done, "dump, replacing", kCart, "dump FILE --overwrite", kOld, kRom);
    add(ExitCode::Done, "read-ram", kCart, "read-ram FILE", kNoFile, kSave);
    add(ExitCode::Done, "read-ram, replacing", kCart, "read-ram FILE --overwrite", kOld, kSave);
    add(ExitCode::Done, "write-ram", kCart, "write-ram DIR/new.sav --backup DIR/backups");
    add(ExitCode::Done, "flash", kFlash, "flash DIR/cart.gb --backup DIR/backups");
    add(ExitCode::Done, "backup", kCart, "backup DIR/stack --count 1");
    add(ExitCode::Done, "drives", kCart, "drives");
    add(ExitCode::Done, "scripts", "", "scripts");
    add(ExitCode::Done, "check-script", "", "check-script " SHIPPED_SCRIPTS "/gb_mbc0.nut");
    add(ExitCode::Done, "help", "", "dump --help");

    add(ExitCode::Usage, "no command", kCart, "");
    add(ExitCode::Usage, "wrong option", kCart, "dump FILE --fast", kOld, kOld);
    add(ExitCode::Usage, "value missing", kCart, "dump FILE --no-auto --system gb", kOld, kOld);
    add(ExitCode::Usage, "kind not told", "", "check-script DIR/new.sav");
    add(ExitCode::Usage, "virtual reader", "cart=DIR/none.gb", "dump FILE");

    add(ExitCode::NoReader, "info", ";", "info");
    add(ExitCode::NoReader, "dump", ";", "dump FILE");
    add(ExitCode::NoReader, "dump unseen", ";", QString("dump FILE") + kAllSaid);
    add(ExitCode::NoReader, "read-ram", ";", "read-ram FILE --overwrite", kOld, kOld);
    add(ExitCode::NoReader, "write-ram", ";", "write-ram DIR/new.sav --backup DIR/backups");
    add(ExitCode::NoReader, "flash", ";", "flash DIR/cart.gb --backup DIR/backups");
    add(ExitCode::NoReader, "drives", ";", "drives");

    if (canDeclareDrives()) {
        add(ExitCode::NoAnswer, "info", "E=DIR/mute", "info");
        add(ExitCode::NoAnswer, "dump", "E=DIR/mute", "dump FILE");
        add(ExitCode::NoAnswer, "dump unseen", "E=DIR/mute", QString("dump FILE") + kAllSaid);
        add(ExitCode::NoAnswer, "write-ram", "E=DIR/mute", "write-ram DIR/new.sav --backup DIR/b");
        add(ExitCode::TransferFailed, "dump", "E=DIR/short", QString("dump FILE") + kAllSaid);
        add(ExitCode::TransferFailed, "dump, replacing", "E=DIR/short",
            QString("dump FILE --overwrite") + kAllSaid, kOld, kOld);
    }

    add(ExitCode::NotRecognised, "info", kEmpty, "info");
    add(ExitCode::NotRecognised, "dump", kEmpty, "dump FILE --overwrite", kOld, kOld);
    add(ExitCode::NotRecognised, "read-ram", kEmpty, "read-ram FILE");
    add(ExitCode::NotRecognised, "write-ram", kEmpty, "write-ram DIR/new.sav --backup DIR/b");
    add(ExitCode::NotRecognised, "flash", kEmpty, "flash DIR/cart.gb --backup DIR/b");

    add(ExitCode::TransferFailed, "script", "", "check-script DIR/gb_mbc1.nut");

    add(ExitCode::FileError, "no folder", kCart, "dump DIR/none/file");
    add(ExitCode::FileError, "folder", kCart, "read-ram DIR/short");
    add(ExitCode::FileError, "no save", kCart, "write-ram FILE --backup DIR/backups");
    add(ExitCode::FileError, "no ROM", kFlash, "flash FILE --backup DIR/backups");
    add(ExitCode::FileError, "no dump", "", "verify FILE");
    add(ExitCode::FileError, "no table", kCart, "dump FILE --dat DIR/none.dat");
    add(ExitCode::FileError, "no script", "", "check-script DIR/none/gb_mbc0.nut");
    add(ExitCode::FileError, "backup in a file", kCart,
        "write-ram DIR/new.sav --backup DIR/cart.gb");

    add(ExitCode::DataMismatch, "unstable", kBad, "dump FILE --overwrite", kOld, kOld);
    add(ExitCode::DataMismatch, "suspicious", kEmpty, QString("dump FILE") + kAllSaid, kNoFile,
        QByteArray(kRomSize, '\xFF'));
    add(ExitCode::DataMismatch, "no dump", "", "verify DIR/kept.sav");
    add(ExitCode::DataMismatch, "backup of bad contacts",
        "cart=DIR/cart.gb,flash=16,flash-size=1M,flaky=3",
        "flash DIR/cart.gb --backup DIR/backups");
    add(ExitCode::DataMismatch, "script", "", "check-script DIR/gb_mbc0.nut");

    add(ExitCode::Refused, "dump", kCart, "dump FILE", kOld, kOld);
    add(ExitCode::Refused, "read-ram", kCart, "read-ram FILE", kOld, kOld);
    add(ExitCode::Refused, "another system", kCart, "dump FILE --system gba");
    add(ExitCode::Refused, "size of the save", kCart, "write-ram DIR/short.sav --backup DIR/b");
    add(ExitCode::Refused, "save of a TAMA5", "cart=DIR/tama5.gb", "read-ram FILE");
    add(ExitCode::Refused, "size for the mapper", kCart, "dump FILE --rom-size 48K");
    add(ExitCode::Refused, "flash on GBA", kGba, "flash DIR/cart.gba --backup DIR/backups");

    add(ExitCode::Unverified, "read once", kCart, "dump FILE --no-verify", kNoFile, kRom);
    add(ExitCode::Unverified, "save read once", kCart, "read-ram FILE --no-verify", kNoFile, kSave);
    add(ExitCode::Unverified, "file", "", "verify DIR/cart.gb");
    add(ExitCode::Unverified, "GBA in a stack", kGba, "backup DIR/stack --count 1");
}

void CliExitCodeTest::codeSaysHowItEnded()
{
    QFETCH(ExitCode, code);
    QFETCH(QString, reader);
    QFETCH(QString, words);
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    QVERIFY(before.isEmpty() || writeFile(path("file"), before));
    const bool isVirtual = reader.contains("cart=");
    const ReaderChoice choice{isVirtual ? filledIn(reader) : QString(),
                              isVirtual ? QString() : filledIn(reader)};
    const ProgramResult result = runProgram(CLI_PROGRAM, filledIn(words), choice);
    QVERIFY2(codeOf(result) == code,
             qPrintable(QString("exit code %1\n").arg(result.exitCode) + result.out + result.err));
    m_codesSeen << result.exitCode;
    QCOMPARE(temporaryFiles(), QStringList());
    QCOMPARE(QFile::exists(path("file")), !after.isEmpty());
    QVERIFY(fileBytes(path("file")) == (after == kRom ? m_image : after == kSave ? m_save : after));
    // Whatever fails, a person is told why.
    QVERIFY(!(result.out + result.err).isEmpty());
}

// Cancelled is provoked below.
void CliExitCodeTest::everyCodeHasARow()
{
    for (const ExitCodeRow &row : kExitCodes)
        QVERIFY2(row.code == ExitCode::Cancelled ||
                     (row.code == ExitCode::NoAnswer && !canDeclareDrives()) ||
                     m_codesSeen.contains(static_cast<int>(row.code)),
                 row.word);
}

#ifndef Q_OS_WIN
void CliExitCodeTest::interruptedRunIsCancelled()
{
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("GBDRIVER_VIRTUAL_READER",
                       filledIn("cart=DIR/cart.gb,flash=8,chip-fault=endless"));
    program.setProcessEnvironment(environment);
    program.start(CLI_PROGRAM, filledIn("flash DIR/cart.gb --backup DIR/backups").split(' '));
    QByteArray log;
    QTRY_VERIFY_WITH_TIMEOUT(
        (log += program.readAllStandardError()).contains("Start erase flash chip..."), kStepMs);
    QCOMPARE(::kill(static_cast<pid_t>(program.processId()), SIGINT), 0);
    QVERIFY(program.waitForFinished(kStepMs));
    QCOMPARE(program.exitStatus(), QProcess::NormalExit);
    QCOMPARE(static_cast<ExitCode>(program.exitCode()), ExitCode::Cancelled);
    QCOMPARE(temporaryFiles(), QStringList());
    const QStringList backups = QDir(path("backups")).entryList(QDir::Files);
    QCOMPARE(backups.size(), 1);
    QVERIFY(fileBytes(path("backups/") + backups[0]) == m_image);
}
#endif

GBDRIVER_TEST(CliExitCodeTest, core)
#include "cli_exit_code_test.moc"
