// Signals at exact moments of every kind of job, to the program and to the mounted reader: no half
// file under a good name, no lost save, nobody left behind on the drive.
#include "../e2e/mounted_reader.h"
#include "program_run.h"
#include "running_program.h"
#include "test_class.h"

#include <QDir>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <csignal>

namespace
{

constexpr std::uint32_t kKibi = 1024;
constexpr std::uint8_t kMbc5RamBattery = 0x1B;
constexpr int kStepMs = 60000;
constexpr int kMoments = 15;
constexpr int kCancelled = static_cast<int>(ExitCode::Cancelled);
constexpr std::array<int, 4> kSignals = {SIGINT, SIGTERM, SIGHUP, SIGKILL};
const char kOldFile[] = "what stood here before";

struct EndedJob {
    QString command; // DIR stands for the folder of the test
    QString target;  // that it makes; empty: it writes to the cartridge
    bool movesSave = false;
    bool isFlash = false;
    bool waits = false; // without a reader, until it is asked to stop
};

struct Ending {
    int moment = 0; // operation of the reader behind which the signal comes; 0: none comes
    int signal = 0;
    bool isReaders = false; // the reader gets it, not the program
};

// One job in a folder of its own, from its begin to the drive that is free again.
class EndingRun
{
public:
    EndingRun(const EndedJob &job, const Ending &ending)
        : m_job(job), m_ending(ending), m_rom(gbImage(kMbc5RamBattery, 256 * kKibi, 32 * kKibi)),
          m_save(noise(32 * kKibi, 1)), m_newSave(noise(32 * kKibi, 2)),
          m_reader({SIGNALLING_READER_PROGRAM, QString::number(ending.moment),
                    QString::number(ending.signal), ending.isReaders ? "-" : path("pid")})
    {
    }

    QStringList run()
    {
        putFile(path("cart.gb"), m_rom);
        putFile(path("chip.sav"), m_save);
        putFile(path("new.sav"), m_newSave);
        QByteArray newRom = m_rom;
        newRom[0x5000] = static_cast<char>(~newRom[0x5000]);
        putFile(path("new.gb"), withGlobalChecksum(newRom));
        QDir(m_folder.path()).mkdir("made");
        if (!m_job.target.isEmpty())
            putFile(path("made/" + m_job.target), kOldFile);
        QStringList options;
        if (m_job.isFlash)
            options = QStringList{"--flash", "16", "--erase-polls", "0"};
        const QString refusal = m_reader.start(path("cart.gb"), path("chip.sav"), options);
        if (!refusal.isEmpty())
            return {refusal};
        if (!runProgram())
            return {"it does not end"};
        checkProgram();
        checkReader();
        checkFiles();
        checkCartridge();
        return m_problems;
    }

    int operations() const { return m_reader.operations().size(); }

private:
    QString path(const QString &name) const { return m_folder.filePath(name); }

    bool runProgram()
    {
        QString command = m_job.command;
        m_program.start(command.replace("DIR", m_folder.path()).split(' '), "GBDRIVER_DRIVES",
                        m_reader.declaration());
        putFile(path("pid"), QByteArray::number(m_program.processId()) + '\n');
        if (m_job.waits && m_ending.isReaders && m_ending.moment != 0 && m_reader.waitForEnd())
            m_program.interrupt();
        const bool hasEnded = QTest::qWaitFor([&] { return m_program.hasEnded(); }, kStepMs);
        m_messages = m_program.messages();
        return hasEnded;
    }

    // A signal may come too late for what it asks, and a write is finished first.
    void checkProgram()
    {
        const int code = m_program.exitCode();
        if (m_ending.moment == 0         ? code != 0
            : m_ending.isReaders         ? code < 0
            : m_ending.signal == SIGKILL ? code != -1
                                         : code != 0 && code != kCancelled)
            m_problems << QString("exit code %1").arg(code);
        if (m_ending.signal != SIGKILL && code != 0 && m_messages.isEmpty())
            m_problems << "it says nothing";
    }

    // Of a killed reader the mount stands, and serves nobody.
    void checkReader()
    {
        const bool isGone = m_ending.isReaders && m_ending.moment != 0;
        const bool isMounted = !isGone || m_ending.signal == SIGKILL;
        if (isGone && !m_reader.waitForEnd())
            m_problems << "the reader does not end";
        const QString refusal = isMounted ? unmountFolder(m_reader.folder()) : QString();
        if (!refusal.isEmpty())
            m_problems << "the drive is not free: " + refusal;
        if (!m_reader.waitForEnd())
            m_problems << "the reader does not end";
    }

    void checkFiles()
    {
        const QDir made(path("made"));
        for (const QString &name : made.entryList(QDir::Files | QDir::Hidden)) {
            const QByteArray content = contentOf(made.filePath(name));
            const bool isPart = name.endsWith(".part");
            if (isPart && m_ending.signal != SIGKILL)
                m_problems << name + " is left";
            else if (!isPart && name.endsWith(".sav") && content != m_save && content != kOldFile)
                m_problems << name + " is no whole save";
            else if (!isPart && name.endsWith(".gb") && content != m_rom && content != kOldFile)
                m_problems << name + " is no whole ROM";
            else if (name.endsWith(".unverified") && content != m_rom && content != m_save)
                m_problems << name + " is no whole read";
        }
    }

    bool hasBackup() const
    {
        const QDir backups(path("backups"));
        const QStringList names = backups.entryList(QDir::Files | QDir::Hidden);
        return std::any_of(names.begin(), names.end(), [&](const QString &name) {
            return !name.endsWith(".part") &&
                   contentOf(backups.filePath(name)) == (m_job.isFlash ? m_rom : m_save);
        });
    }

    void checkCartridge()
    {
        const QByteArray save = contentOf(path("chip.sav"));
        if (save.size() != m_save.size())
            m_problems << "the chip's file is not whole";
        const bool isSaveWritten = m_job.target.isEmpty() && !m_job.isFlash;
        if (save != m_save && !(isSaveWritten && hasBackup()))
            m_problems << "the save is LOST";
        if (m_job.isFlash && m_messages.contains("Start erase flash chip...") && !hasBackup())
            m_problems << "the ROM is LOST";
        if (isSaveWritten && m_program.exitCode() == 0 && save != m_newSave)
            m_problems << "called done, but not written";
        if (m_job.target.isEmpty() && m_ending.signal != SIGKILL &&
            !QDir(path("backups")).entryList({"*.part"}, QDir::Files | QDir::Hidden).isEmpty())
            m_problems << "half a backup is left";
    }

    EndedJob m_job;
    Ending m_ending;
    QTemporaryDir m_folder;
    QByteArray m_rom;
    QByteArray m_save;
    QByteArray m_newSave;
    MountedReader m_reader;
    RunningProgram m_program;
    QString m_messages;
    QStringList m_problems;
};

// Operation number of a moment, 1 to kMoments, of a job with so many operations.
int operationAt(int moment, int operations)
{
    return 1 + (operations - 1) * (moment - 1) / (kMoments - 1);
}

// In turn, but all of them if the environment has GBDRIVER_ALL_FAULTS.
QVector<int> signalsAt(int moment)
{
    if (qEnvironmentVariableIsSet("GBDRIVER_ALL_FAULTS"))
        return {kSignals.begin(), kSignals.end()};
    return {kSignals[static_cast<std::size_t>(moment) % kSignals.size()]};
}

} // namespace

Q_DECLARE_METATYPE(EndedJob)

class EndingsProgramTest : public QObject
{
    Q_OBJECT

private slots:
    void nothingIsHalfOrLost_data();
    void nothingIsHalfOrLost();
};

void EndingsProgramTest::nothingIsHalfOrLost_data()
{
    QTest::addColumn<EndedJob>("job");
    QTest::addColumn<bool>("isReaders");
    const QVector<QPair<const char *, EndedJob>> jobs = {
        {"dump", {"dump DIR/made/game.gb --overwrite", "game.gb"}},
        {"read-ram", {"read-ram DIR/made/game.sav --overwrite", "game.sav", true}},
        {"backup", {"backup DIR/made --count 1", "other.txt", false, false, true}},
        {"write-ram", {"write-ram DIR/new.sav --backup DIR/backups", "", true}},
        {"flash", {"flash DIR/new.gb --backup DIR/backups", "", false, true}},
    };
    for (const bool isReaders : {false, true}) {
        for (const auto &job : jobs)
            QTest::addRow("%s, signal to the %s", job.first, isReaders ? "reader" : "program")
                << job.second << isReaders;
    }
}

void EndingsProgramTest::nothingIsHalfOrLost()
{
    QFETCH(EndedJob, job);
    QFETCH(bool, isReaders);
    EndingRun whole(job, {});
    QCOMPARE(whole.run(), QStringList());
    const int operations = whole.operations();
    QVERIFY(operations >= kMoments);
    int count = 0;
    for (int moment = 1; moment <= kMoments; ++moment) {
        for (const int signal : signalsAt(moment)) {
            const Ending ending = {operationAt(moment, operations), signal, isReaders};
            EndingRun run(job, ending);
            const QStringList problems = run.run();
            QVERIFY2(problems.isEmpty(), qPrintable(QString("operation %1, signal %2: %3")
                                                        .arg(ending.moment)
                                                        .arg(signal)
                                                        .arg(problems.join("; "))));
            ++count;
        }
    }
    qInfo("%d signals at %d moments", count, kMoments);
}

GBDRIVER_TEST(EndingsProgramTest, core)
#include "endings_program_test.moc"
