// A real Ctrl-C to the built program: exit codes, what it says, and what is left on the disk and in
// the cartridge. A reader that is stopped for a while holds the program where it is.
#include "../e2e/mounted_reader.h"
#include "program_run.h"
#include "running_program.h"
#include "test_class.h"

#include "cli/shell_word.h"

#include <QDir>
#include <QTemporaryDir>
#include <QtTest>

namespace
{

constexpr std::uint32_t kKibi = 1024;
constexpr std::uint32_t kMebi = 1024 * 1024;
constexpr std::uint8_t kMbc5 = 0x19;
constexpr int kStepMs = 60000;

// The reader answers nothing while this lives.
class StoppedReader
{
public:
    explicit StoppedReader(const MountedReader &reader) : m_process(reader.processId())
    {
        m_isStopped = RunningProgram::sendSignal(m_process, SIGSTOP);
    }
    ~StoppedReader() { RunningProgram::sendSignal(m_process, SIGCONT); }
    StoppedReader(const StoppedReader &) = delete;
    StoppedReader &operator=(const StoppedReader &) = delete;

    bool isStopped() const { return m_isStopped; }

private:
    qint64 m_process;
    bool m_isStopped;
};

} // namespace

class InterruptProgramTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void dumpFinishesItsReadAndKeepsIt()
    {
        MountedReader reader;
        RunningProgram program;
        startDump(&reader, &program);
        {
            const StoppedReader stopped(reader);
            QVERIFY(stopped.isStopped());
            QVERIFY(program.interrupt());
            QTRY_VERIFY_WITH_TIMEOUT(program.said("Asked to stop. The cartridge is only being "
                                                  "read; the read is finished first"),
                                     kStepMs);
            QVERIFY(!program.hasEnded());
        }
        QTRY_VERIFY_WITH_TIMEOUT(program.hasEnded(), kStepMs);
        QCOMPARE(program.exitCode(), 9);
        const QString messages = program.messages();
        QCOMPARE(messages.count("Asked to stop."), 1);
        QVERIFY2(messages.contains("The cartridge was read, which also writes to its bus."),
                 qPrintable(messages));
        QVERIFY2(!messages.contains("\ncompare "), qPrintable(messages));
        QCOMPARE(program.answers(), QString());
        QCOMPARE(filesIn("dump"), QStringList({"game.gb.unverified"}));
    }

    // Which a reader that hangs does not come to.
    void secondInterruptLeavesTheReadAndTheThirdEndsTheProgram()
    {
        MountedReader reader;
        RunningProgram program;
        startDump(&reader, &program);
        {
            const StoppedReader stopped(reader);
            QVERIFY(stopped.isStopped());
            QVERIFY(program.interrupt());
            QTRY_VERIFY_WITH_TIMEOUT(program.said("Ctrl-C again leaves the read"), kStepMs);
            QVERIFY(program.interrupt());
            // Two that come together are one.
            QTRY_VERIFY_WITH_TIMEOUT(program.hasNoticedSignals(), kStepMs);
            QVERIFY(program.interrupt());
        }
        QTRY_VERIFY_WITH_TIMEOUT(program.hasEnded(), kStepMs);
        QCOMPARE(program.exitCode(), -1);
        QVERIFY(!program.messages().contains("Dump rom finish."));
        QVERIFY(!filesIn("dump").contains("game.gb"));
    }

    void secondInterruptLeavesTheRead()
    {
        MountedReader reader;
        RunningProgram program;
        startDump(&reader, &program);
        {
            const StoppedReader stopped(reader);
            QVERIFY(stopped.isStopped());
            QVERIFY(program.interrupt());
            QTRY_VERIFY_WITH_TIMEOUT(program.said("Ctrl-C again leaves the read"), kStepMs);
            QVERIFY(program.interrupt());
        }
        QTRY_VERIFY_WITH_TIMEOUT(program.hasEnded(), kStepMs);
        QCOMPARE(program.exitCode(), 9);
        QVERIFY2(
            program.messages().contains("The cartridge was read, which also writes to its bus."),
            qPrintable(program.messages()));
        QCOMPARE(filesIn("dump"), QStringList());
    }

    // Not only in a job: a command that only looks waits as well.
    void secondSignalEndsAnyWaitForTheReader_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<int>("signal");
        for (const char *command : {"info", "drives", "dump"}) {
            QTest::addRow("%s, Ctrl-C", command) << QString(command) << SIGINT;
            QTest::addRow("%s, kill", command) << QString(command) << SIGTERM;
        }
    }
    void secondSignalEndsAnyWaitForTheReader()
    {
        QFETCH(QString, command);
        QFETCH(int, signal);
        QStringList arguments(command);
        if (command == "dump")
            arguments << path("target");
        putFile(path("cart.gb"), gbImage(kMbc5, 64 * kKibi, 0));
        MountedReader reader;
        QCOMPARE(reader.start(path("cart.gb")), QString());
        const StoppedReader stopped(reader);
        QVERIFY(stopped.isStopped());
        RunningProgram program;
        program.start(arguments, "GBDRIVER_DRIVES", reader.declaration());
        QTRY_VERIFY_WITH_TIMEOUT(program.hears(signal) || program.hasEnded(), kStepMs);
        QVERIFY(program.send(signal));
        QTRY_VERIFY_WITH_TIMEOUT(program.said("Asked to stop. The reader does not answer; the same "
                                              "signal again ends the program at once."),
                                 kStepMs);
        QVERIFY(!program.hasEnded());
        QVERIFY(program.send(signal));
        QTRY_VERIFY_WITH_TIMEOUT(program.hasEnded(), kStepMs);
        QCOMPARE(program.exitCode(), -1);
    }

    // Whether the write had begun is not for the test to choose; what must hold then differs.
    void saveIsInTheCartridgeOrInTheBackup_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::newRow("at once") << QByteArray("Using:");
        QTest::newRow("backup") << QByteArray("backup  [");
        QTest::newRow("second read") << QByteArray("compare [");
        QTest::newRow("backup is there") << QByteArray("Backup: ");
        QTest::newRow("write") << QByteArray("Start write save...");
    }
    void saveIsInTheCartridgeOrInTheBackup()
    {
        QFETCH(QByteArray, line);
        const QByteArray old = noise(128 * kKibi, 1);
        const QByteArray other = noise(128 * kKibi, 2);
        putFile(path("chip.sav"), old);
        putFile(path("new.sav"), other);
        putFile(path("cart.gb"), mbc5Image(64 * kKibi, 128 * kKibi));
        MountedReader reader;
        QCOMPARE(reader.start(path("cart.gb"), path("chip.sav")), QString());

        RunningProgram program;
        program.start({"write-ram", path("new.sav"), "--backup", path("backups")},
                      "GBDRIVER_DRIVES", reader.declaration());
        QTRY_VERIFY_WITH_TIMEOUT(program.said(line), kStepMs);
        const bool isPressed = program.interrupt();
        QTRY_VERIFY_WITH_TIMEOUT(program.hasEnded(), kStepMs);
        const QString messages = program.messages();
        QVERIFY2(isPressed || program.exitCode() == 0, qPrintable(messages));
        QCOMPARE(reader.unmount(), QString());

        QVERIFY(filesIn("backups").filter(".part").isEmpty());
        const bool isWritten = messages.contains("Start write save...");
        QVERIFY2(program.exitCode() == (isWritten ? 0 : 9), qPrintable(messages));
        QVERIFY(contentOf(path("chip.sav")) == (isWritten ? other : old));
        if (isWritten)
            QVERIFY(contentOf(path("backups/" + filesIn("backups").value(0))) == old);
        else
            QVERIFY2(saysUnwritten(messages), qPrintable(messages));
    }

    void endlessEraseIsLeftWithTheWayBack()
    {
        const QByteArray old = gbImage(kMbc5, 64 * kKibi, 0);
        QByteArray other = old;
        other[0x4000] = static_cast<char>(other[0x4000] ^ 1);
        putFile(path("cart.gb"), old);
        putFile(path("new.gb"), other);
        RunningProgram program;
        program.start({"flash", path("new.gb"), "--backup", path("backups")},
                      "GBDRIVER_VIRTUAL_READER",
                      "cart=" + path("cart.gb") + ",flash=8,chip-fault=endless");
        QTRY_VERIFY_WITH_TIMEOUT(program.said("Start erase flash chip..."), kStepMs);
        QVERIFY(program.interrupt());
        QTRY_VERIFY_WITH_TIMEOUT(program.hasEnded(), kStepMs);

        const QString messages = program.messages();
        QVERIFY2(program.exitCode() == 9, qPrintable(messages));
        const QStringList backups = filesIn("backups");
        QCOMPARE(backups.size(), 1);
        const QString backup = path("backups/" + backups[0]);
        QVERIFY(contentOf(backup) == old);
        for (const QString &text :
             {QString("Ctrl-C ends the wait, and what the chip held may then be lost."),
              QString("only the wait for an erase can be cut short"),
              QString("Stopped while the chip was being erased. What the chip held may be lost."),
              "gbdriver-cli flash " + shellWord(backup)})
            QVERIFY2(messages.contains(text), qPrintable(messages));
    }

    void stackThatWaitsIsDone()
    {
        RunningProgram program;
        program.start({"backup", path("stack")}, "GBDRIVER_VIRTUAL_READER", "cart=none");
        QTRY_VERIFY_WITH_TIMEOUT(program.said("Insert a cartridge. Ctrl-C ends."), kStepMs);
        QVERIFY(program.interrupt());
        QTRY_VERIFY_WITH_TIMEOUT(program.hasEnded(), kStepMs);
        QCOMPARE(program.exitCode(), 0);
        QCOMPARE(program.answers(), QString("0 cartridges done.\n"));
        QCOMPARE(filesIn("stack"), QStringList());
    }

private:
    static bool saysUnwritten(const QString &messages)
    {
        return messages.contains("the cartridge is as it was.") ||
               messages.contains("The write was not begun; ") ||
               messages.contains("The cartridge was read, which also writes to its bus.");
    }

    QString path(const QString &name) const { return m_folder->filePath(name); }

    QStringList filesIn(const QString &folder) const
    {
        return QDir(path(folder)).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }

    // A dump of 8 MiB whose first bytes have arrived.
    void startDump(MountedReader *reader, RunningProgram *program)
    {
        putFile(path("cart.gb"), gbImage(kMbc5, 8 * kMebi, 0));
        QCOMPARE(reader->start(path("cart.gb")), QString());
        QVERIFY(QDir(path("")).mkdir("dump"));
        program->start({"dump", path("dump/game.gb")}, "GBDRIVER_DRIVES", reader->declaration());
        QTRY_VERIFY_WITH_TIMEOUT(program->said("read    ["), kStepMs);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

GBDRIVER_TEST(InterruptProgramTest, core)
#include "interrupt_program_test.moc"
