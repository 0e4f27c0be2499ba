// The command backup: a stack of cartridges, one after the other, ROM and save of each into one
// folder.
#include "cli/commands.h"

#include "cli/cartridge_look.h"
#include "cli/cli_listener.h"
#include "cli/interrupt.h"
#include "cli/known_tables.h"
#include "cli/option_table.h"
#include "cli/telling.h"
#include "trust/cartridge_backup.h"
#include "trust/words.h"

#include <QCryptographicHash>
#include <QDir>
#include <QThread>

namespace
{

constexpr int kPollMs = 50;

// What tells one cartridge from another as long as only its header is read.
QByteArray identityOf(const CartridgeReport &report)
{
    return isRecognised(report) ? QCryptographicHash::hash(report.header, QCryptographicHash::Sha1)
                                : QByteArray();
}

// Returns: false if the user asked to stop.
bool pauseBetweenLooks(int pauseMs)
{
    for (int leftMs = pauseMs; leftMs > 0 && !wasInterrupted(); leftMs -= kPollMs)
        QThread::msleep(static_cast<unsigned long>(qMin(leftMs, kPollMs)));
    return !wasInterrupted();
}

QString waitText(JobEnd readerFault)
{
    switch (readerFault) {
    case JobEnd::Done:
        return QStringLiteral("Insert a cartridge. Ctrl-C ends.");
    case JobEnd::NoReader:
        return jobFailureText(readerFault) + QStringLiteral(" Plug it in. Ctrl-C ends.");
    case JobEnd::ReaderInUse:
        return jobFailureText(readerFault) + QStringLiteral(" Waiting for its end. Ctrl-C ends.");
    case JobEnd::NotTheReader:
        return jobFailureText(readerFault) + QStringLiteral(" Take it out. Ctrl-C ends.");
    default:
        return jobFailureText(readerFault) + QStringLiteral(" Plug it in again. Ctrl-C ends.");
    }
}

// What the user can do about a memory that was not read, in terms of options.
QString wayOut(const BackedUpMemory &memory, const CartridgeValues &values)
{
    switch (memory.end) {
    case MemoryEnd::NotKnown:
        return QStringLiteral(": ") + missingText(memory.missing, values);
    case MemoryEnd::Locked:
        return QStringLiteral("; use read-ram");
    case MemoryEnd::UnknownGame:
        return QStringLiteral("; use read-ram with --save-type and --ram-size");
    default:
        return QString();
    }
}

ExitCode exitCodeOf(const BackedUpMemory &memory)
{
    switch (memory.end) {
    case MemoryEnd::Kept:
        return exitCodeOf(memory.verdict.kind);
    case MemoryEnd::NoMemory:
        return ExitCode::Done;
    case MemoryEnd::NotKnown:
    case MemoryEnd::UnknownGame:
        return ExitCode::NotRecognised;
    case MemoryEnd::Dangerous:
    case MemoryEnd::Locked:
        return ExitCode::Refused;
    case MemoryEnd::Swapped:
        return ExitCode::DataMismatch;
    case MemoryEnd::NotRead:
    case MemoryEnd::NotReadTwice:
    case MemoryEnd::NotWritten:
        break;
    }
    return exitCodeOf(memory.outcome);
}

// What the user sees of one cartridge.
struct DoneCartridge {
    ExitCode code = ExitCode::Done; // the first of ROM and save that is not Done
    QString title;
    QString rom; // one line: the verdict, or why there is none
    QString save;
    bool isNew = true;
    bool hasFailed = false; // something of it is missing that would come another time
};

bool hasFailed(const BackedUpMemory &memory)
{
    return memory.end == MemoryEnd::NotRead || memory.end == MemoryEnd::NotReadTwice ||
           memory.end == MemoryEnd::Swapped || memory.end == MemoryEnd::NotWritten;
}

// One cartridge at work.
class OneCartridge
{
public:
    OneCartridge(const CartridgeReport &report, const CartridgeBackupPlan &plan, Reporter &reporter)
        : m_reporter(reporter), m_listener(reporter), m_backup(report, plan, m_listener)
    {
        const CartridgeValues &values = m_backup.values();
        tellValues({ExitCode::Done, values, values, values, report, m_backup.title()}, {},
                   reporter);
    }

    DoneCartridge run()
    {
        const BackedUpMemory &rom = m_backup.backUpRom();
        const QString romAdvice = tell(rom, &m_done.rom);
        QString saveAdvice;
        QString savePath;
        CartridgeState state = rom.outcome.state;
        if (!isStopped()) {
            const BackedUpMemory &save = m_backup.backUpSave();
            saveAdvice = tell(save, &m_done.save);
            savePath = save.path;
            state = afterBoth(state, save.outcome.state);
        }
        m_done.title = m_backup.title();
        m_done.isNew = m_backup.isNew();
        if (m_done.code == ExitCode::Cancelled)
            tellWhatIsKept(rom.path, savePath, state);
        else
            note(tellTrouble(m_backup.writeReport(romAdvice, saveAdvice), m_reporter));
        return m_done;
    }

private:
    // The first that is not Done, unless the user asked to stop.
    void note(ExitCode code)
    {
        if (m_done.code == ExitCode::Done || code == ExitCode::Cancelled)
            m_done.code = code;
    }

    // Returns: what the user can do.
    QString tell(const BackedUpMemory &memory, QString *line)
    {
        const QString advice = wayOut(memory, m_backup.values());
        note(exitCodeOf(memory));
        m_done.hasFailed = m_done.hasFailed || hasFailed(memory);
        *line = memoryText(memory) + advice;
        tellTrouble(memory.outcome, m_reporter);
        if (memory.end == MemoryEnd::Kept)
            tellVerdict(memory.verdict,
                        {memory.path, memory.bytes.size(), memory.sha1, memory.reads}, m_reporter);
        return advice;
    }

    bool isStopped()
    {
        if (wasInterrupted())
            note(ExitCode::Cancelled);
        return m_done.code == ExitCode::Cancelled;
    }

    // `state`: what the reads left.
    void tellWhatIsKept(const QString &romPath, const QString &savePath, CartridgeState state)
    {
        QString text = QStringLiteral("Asked to stop; nothing of it was kept.");
        if (!romPath.isEmpty())
            text = QStringLiteral("Asked to stop; its ROM is in %1, its save ").arg(romPath) +
                   (savePath.isEmpty() ? QStringLiteral("was not kept.")
                                       : QStringLiteral("in ") + savePath + QLatin1Char('.'));
        tellProblem(ExitCode::Cancelled, text,
                    isOnlyRead(state) ? state : CartridgeState::LookedAt, m_reporter);
    }

    Reporter &m_reporter;
    CliListener m_listener;
    CartridgeBackup m_backup;
    DoneCartridge m_done;
};

class Stack
{
public:
    Stack(const CliOptions &options, int pauseMs, Reporter &reporter)
        : m_options(options), m_pauseMs(pauseMs), m_reporter(reporter)
    {
    }

    ExitCode run()
    {
        m_plan.folder = m_options.path;
        m_plan.reads = m_options.reads;
        m_plan.program = QStringLiteral("gbdriver-cli " GBDRIVER_VERSION);
        if (!readTables(m_options.datFiles, &m_plan.tables, m_reporter) || !makeFolder())
            return ExitCode::FileError;
        CartridgeReport report;
        report.outcome = ReportOutcome::Unknown; // nothing is known before the first look
        while (!isFull() && m_code != ExitCode::Cancelled && waitForCartridge(&report))
            handle(report);
        m_reporter.answer(summary());
        return m_handled == 0 && m_code == ExitCode::Done ? tellReaderFault(report) : m_code;
    }

private:
    bool makeFolder()
    {
        if (QDir().mkpath(m_options.path))
            return true;
        tellProblem(ExitCode::FileError,
                    QStringLiteral("Cannot make the folder %1. Name one where you may write.")
                        .arg(m_options.path),
                    CartridgeState::NotRead, m_reporter);
        return false;
    }

    bool isFull() const { return m_options.count != 0 && m_handled >= m_options.count; }

    // "2 cartridges done, 1 failed."
    QString summary() const
    {
        const int done = m_handled - m_failed;
        const QString text = done == 1 ? QStringLiteral("1 cartridge done")
                                       : QStringLiteral("%1 cartridges done").arg(done);
        return text +
               (m_failed == 0 ? QStringLiteral(".") : QStringLiteral(", %1 failed.").arg(m_failed));
    }

    // Who stops waiting for a reader that never came has backed up nothing.
    ExitCode tellReaderFault(const CartridgeReport &lastLook)
    {
        const ExitCode code = readerFault(lastLook);
        if (code != ExitCode::Done)
            m_reporter.problem(readerProblem(lastLook));
        return code;
    }

    // Waits until two looks see the same cartridge, another one than the last, or the last one
    // after it was taken out: a header that is read while the cartridge slides in may be anything.
    bool waitForCartridge(CartridgeReport *report)
    {
        QByteArray before;
        QString told;
        while (!wasInterrupted()) {
            *report = detectCartridge([](const QString &) {});
            const QByteArray identity = identityOf(*report);
            if (identity.isEmpty())
                m_last.clear();
            if (identity.isEmpty() && told != waitText(readerFaultOf(*report))) {
                told = waitText(readerFaultOf(*report));
                m_reporter.log(told);
            }
            if (!identity.isEmpty() && identity != m_last && identity == before) {
                m_last = identity;
                return true;
            }
            before = identity;
            if (!pauseBetweenLooks(m_pauseMs))
                return false;
        }
        return false;
    }

    void handle(const CartridgeReport &report)
    {
        const DoneCartridge backup = OneCartridge(report, m_plan, m_reporter).run();
        if (m_code == ExitCode::Done || backup.code == ExitCode::Cancelled)
            m_code = backup.code;
        if (backup.code == ExitCode::Cancelled)
            return;
        ++m_handled;
        m_failed += backup.hasFailed ? 1 : 0;
        m_reporter.answer(
            QStringLiteral("%1. %2%3")
                .arg(m_handled)
                .arg(backup.title,
                     backup.isNew ? QString() : QStringLiteral(": already done, nothing new")));
        m_reporter.answer(QStringLiteral("   ROM:  ") + backup.rom);
        m_reporter.answer(QStringLiteral("   Save: ") + backup.save);
        if (!isFull())
            m_reporter.log(QStringLiteral("Swap the cartridge. Ctrl-C ends."));
    }

    const CliOptions &m_options;
    int m_pauseMs;
    Reporter &m_reporter;
    CartridgeBackupPlan m_plan;
    QByteArray m_last; // identity of the cartridge that was handled and is still in the slot
    int m_handled = 0;
    int m_failed = 0; // of these
    ExitCode m_code = ExitCode::Done;
};

} // namespace

ExitCode runBackup(const CliOptions &options, Reporter &reporter, int pauseMs)
{
    return Stack(options, pauseMs, reporter).run();
}
