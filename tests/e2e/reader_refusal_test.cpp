// Drives that the real programs must leave alone: a reader that another program uses, and a memory
// stick that was taken for one.
#include "cartridge_files.h"
#include "driven_window.h"
#include "mounted_reader.h"
#include "process_run.h"

#include "cli/exit_code.h"
#include "test_class.h"

#include <QDir>
#include <QtTest>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace
{

constexpr std::uint32_t kRomSize = 64 * 1024;
constexpr std::uint32_t kSaveSize = 8 * 1024;

// Another program in the middle of a job: it holds the command file.
class OtherProgram
{
public:
    explicit OtherProgram(const MountedReader &reader)
        : m_file(::open(QFile::encodeName(reader.folder() + "/CMD.CMD").constData(),
                        O_WRONLY | O_CLOEXEC))
    {
    }
    ~OtherProgram() { ::close(m_file); }
    OtherProgram(const OtherProgram &) = delete;
    OtherProgram &operator=(const OtherProgram &) = delete;

    bool holdsTheReader() const { return ::flock(m_file, LOCK_EX | LOCK_NB) == 0; }

private:
    int m_file;
};

ProcessRun runCli(const QString &declaration, const QStringList &arguments)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove("GBDRIVER_VIRTUAL_READER");
    environment.insert("GBDRIVER_DRIVES", declaration);
    return runProcess(CLI_PROGRAM, arguments, environment);
}

} // namespace

class ReaderRefusalTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        m_image = m_files.addImage(0x1B, kRomSize, kSaveSize);
        m_save = m_files.addNoise("new.sav", kSaveSize, 1);
    }

    void usedReaderIsLeftAlone_data() { addCommands(); }
    void usedReaderIsLeftAlone()
    {
        QFETCH(QStringList, arguments);
        MountedReader reader;
        QCOMPARE(reader.start(m_image), QString());
        const OtherProgram other(reader);
        QVERIFY(other.holdsTheReader());
        const ProcessRun run = runCli(reader.declaration(), arguments);
        QVERIFY2(run.exitCode == static_cast<int>(ExitCode::InUse), run.errors.constData());
        QVERIFY2(run.errors.contains("Another program uses the reader."), run.errors.constData());
        QVERIFY2(!run.errors.contains("Unplug"), run.errors.constData());
        QCOMPARE(countCommandRuns(reader.operations()), 0);
    }

    void drivesTellsOfTheOtherProgram()
    {
        MountedReader reader;
        QCOMPARE(reader.start(m_image), QString());
        const OtherProgram other(reader);
        QVERIFY(other.holdsTheReader());
        const ProcessRun run = runCli(reader.declaration(), {"drives"});
        QCOMPARE(run.exitCode, 0);
        QVERIFY2(run.output.contains("CMD.CMD: fails: ") &&
                     run.output.contains("is open in another program"),
                 run.output.constData());
    }

    void windowTellsOfTheOtherProgram()
    {
        MountedReader reader;
        QCOMPARE(reader.start(m_image), QString());
        const OtherProgram other(reader);
        QVERIFY(other.holdsTheReader());
        DrivenWindow window;
        QCOMPARE(window.start(reader), QString());
        window.press(WindowButton::Info);
        const QString log = window.logWith("Another program uses the reader.");
        QVERIFY2(log.contains("Initialize device error.\nfailed: Another program uses"),
                 qPrintable(log));
        QCOMPARE(window.close(), QString());
        QCOMPARE(countCommandRuns(reader.operations()), 0);
    }

    void stickIsLeftAlone_data() { addCommands(); }
    void stickIsLeftAlone()
    {
        QFETCH(QStringList, arguments);
        const QTemporaryDir stick;
        putFile(stick.filePath("holiday.txt"), "content");
        const ProcessRun run = runCli("E=" + stick.path(), arguments);
        QVERIFY2(run.exitCode == static_cast<int>(ExitCode::NoReader), run.errors.constData());
        QVERIFY2(run.errors.contains(stick.path().toLocal8Bit() + " holds no K-DRIVER.DMP"),
                 run.errors.constData());
        QCOMPARE(QDir(stick.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
                 QStringList("holiday.txt"));
    }

private:
    void addCommands()
    {
        QTest::addColumn<QStringList>("arguments");
        const QString target = m_files.path("none");
        const QStringList settings = {"--no-auto", "--system",   "gb", "--mapper",
                                      "mbc5",      "--rom-size", "64K"};
        QTest::newRow("info") << QStringList{"info"};
        QTest::newRow("dump") << QStringList{"dump", target};
        QTest::newRow("dump, unseen") << QStringList{"dump", target} + settings;
        QTest::newRow("read-ram") << QStringList{"read-ram", target};
        QTest::newRow("write-ram") << QStringList{"write-ram", m_save};
        QTest::newRow("flash") << QStringList{"flash", m_image};
        QTest::newRow("flash, unseen") << QStringList{"flash", m_image} + settings;
    }

    CartridgeFiles m_files;
    QString m_image;
    QString m_save;
};

GBDRIVER_TEST(ReaderRefusalTest, core)
#include "reader_refusal_test.moc"
