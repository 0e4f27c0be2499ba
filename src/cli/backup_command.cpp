#include "cli/backup_command.h"

#include "cli/cartridge_backup.h"
#include "cli/cli_detection.h"
#include "cli/interrupt.h"
#include "cli/known_titles.h"

#include <QCryptographicHash>
#include <QDir>
#include <QThread>

namespace
{

constexpr int kPollMs = 50;

bool isRecognised(const CartridgeReport &report)
{
    return report.outcome == ReportOutcome::GbCartridge ||
           report.outcome == ReportOutcome::GbaCartridge || isUnknownGbaGame(report);
}

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

QString waitText(ReportOutcome outcome)
{
    switch (outcome) {
    case ReportOutcome::NoReader:
        return QStringLiteral("No reader was found. Plug it in. Ctrl-C ends.");
    case ReportOutcome::NoMode:
    case ReportOutcome::ShortRead:
        return QStringLiteral("The reader does not answer. Plug it in again. Ctrl-C ends.");
    default:
        return QStringLiteral("Insert a cartridge. Ctrl-C ends.");
    }
}

class Stack
{
public:
    Stack(const CliOptions &options, int pauseMs, Reporter &reporter)
        : m_options(options), m_pauseMs(pauseMs), m_reporter(reporter)
    {
    }

    ExitCode run()
    {
        if (!readTables(m_options.datFiles, &m_tables, m_reporter) || !makeFolder())
            return ExitCode::FileError;
        CartridgeReport report;
        while (!isFull() && m_code != ExitCode::Cancelled && waitForCartridge(&report))
            handle(report);
        m_reporter.answer(m_done == 1 ? QStringLiteral("1 cartridge done.")
                                      : QStringLiteral("%1 cartridges done.").arg(m_done));
        return m_code;
    }

private:
    bool makeFolder()
    {
        if (QDir().mkpath(m_options.path))
            return true;
        m_reporter.problem(QStringLiteral("Can not make the folder %1. Name one where you may "
                                          "write. Nothing was read.")
                               .arg(m_options.path));
        return false;
    }

    bool isFull() const { return m_options.count != 0 && m_done >= m_options.count; }

    // Waits until two looks see the same cartridge, another one than the last, or the last one after
    // it was taken out: a header that is read while the cartridge slides in may be anything.
    bool waitForCartridge(CartridgeReport *report)
    {
        QByteArray before;
        QString told;
        while (!wasInterrupted()) {
            *report = detectCartridge([](const QString &) {});
            const QByteArray identity = identityOf(*report);
            if (identity.isEmpty())
                m_last.clear();
            if (identity.isEmpty() && told != waitText(report->outcome)) {
                told = waitText(report->outcome);
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
        const CartridgeBackup backup = backUpCartridge(report, m_options, m_tables, m_reporter);
        if (m_code == ExitCode::Done || backup.code == ExitCode::Cancelled)
            m_code = backup.code;
        if (backup.code == ExitCode::Cancelled)
            return;
        ++m_done;
        m_reporter.answer(
            QStringLiteral("%1. %2%3")
                .arg(m_done)
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
    QVector<DatFile> m_tables;
    QByteArray m_last; // identity of the cartridge that was handled and is still in the slot
    int m_done = 0;
    ExitCode m_code = ExitCode::Done;
};

} // namespace

ExitCode runBackup(const CliOptions &options, Reporter &reporter, int pauseMs)
{
    return Stack(options, pauseMs, reporter).run();
}
