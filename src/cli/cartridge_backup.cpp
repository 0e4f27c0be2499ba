#include "cli/cartridge_backup.h"

#include "cart/gba_header.h"
#include "cart/setting_tables.h"
#include "cli/backup_report.h"
#include "cli/backup_store.h"
#include "cli/cartridge_look.h"
#include "cli/cli_command.h"
#include "cli/cli_detection.h"
#include "cli/file_sha1.h"
#include "cli/interrupt.h"
#include "cli/job_runner.h"
#include "cli/known_titles.h"
#include "cli/pending_file.h"
#include "cli/repeated_read.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QElapsedTimer>

namespace
{

constexpr int kColorFlagOffset = 0x143;
constexpr int kTypeOffset = 0x147;
constexpr int kFirstMmm01Type = 0x0B;
constexpr int kLastMmm01Type = 0x0D;
constexpr int kPlainMmm01Rom = 512 * 1024;
constexpr char kColorFlag = '\x80';
// The largest that a reader reads without a bank switch; a game that no table knows may have less,
// which shows in what is read.
constexpr int kLargestGbaRom = 32 * 1024 * 1024;

class Backup
{
public:
    Backup(const CartridgeReport &report, const CliOptions &options, const QVector<DatFile> &tables,
           Reporter &reporter)
        : m_report(report), m_options(options), m_tables(tables), m_reporter(reporter),
          m_values(valuesFound(report))
    {
        m_record.label = report.label;
        m_record.firmware = report.firmware;
        m_record.begin = QDateTime::currentDateTime();
        m_result.title = titleOf(report);
    }

    CartridgeBackup run()
    {
        tellValues({ExitCode::Done, m_values, m_values, m_report, m_result.title}, {}, m_reporter);
        const bool romIsThere = backUpRom();
        const bool saveIsThere = !isStopped() && backUpSave();
        m_result.isNew = !(romIsThere && saveIsThere);
        m_result.rom = m_record.rom.verdict;
        m_result.save = m_record.save.verdict;
        if (m_result.code == ExitCode::Cancelled)
            tellWhatIsKept();
        else if (m_result.isNew)
            writeReport();
        return m_result;
    }

private:
    // The first that is not Done, unless the user asked to stop.
    void note(ExitCode code)
    {
        if (m_result.code == ExitCode::Done || code == ExitCode::Cancelled)
            m_result.code = code;
    }

    bool isStopped()
    {
        if (wasInterrupted())
            note(ExitCode::Cancelled);
        return m_result.code == ExitCode::Cancelled;
    }

    void tellWhatIsKept()
    {
        m_reporter.problem(
            m_record.rom.path.isEmpty()
                ? QStringLiteral("Stopped. The cartridge is as it was; nothing of it was kept.")
                : QStringLiteral("Stopped. The cartridge is as it was; its ROM is in %1, its save "
                                 "was not kept.")
                      .arg(m_record.rom.path));
    }

    bool failWith(ExitCode code, const QString &text, BackedUpMemory *memory)
    {
        note(code);
        memory->verdict = text;
        return false;
    }

    bool makeJob(const char *command, CliJob *job, BackedUpMemory *memory)
    {
        QString problem;
        if (!completeJob(*findCliCommand(QLatin1String(command)), QString(), m_values, job,
                         &problem))
            return failWith(ExitCode::NotRecognised, QStringLiteral("not read: ") + problem,
                            memory);
        m_record.script = job->scriptName;
        return true;
    }

    // The first read. Returns: false if it failed; the memory's verdict then says so.
    bool read(const CliJob &job, BackedUpMemory *memory)
    {
        QElapsedTimer clock;
        clock.start();
        const JobResult result =
            readToMemory(job, "read", JobLog::Told, m_reporter, &memory->bytes);
        memory->milliseconds = clock.elapsed();
        memory->sha1 = result.sha1;
        memory->reads = 1;
        if (result.code == ExitCode::Done)
            return true;
        return failWith(result.code, QStringLiteral("not read, see above"), memory);
    }

    bool readMore(const CliJob &job, int times, BackedUpMemory *memory, QString *differences)
    {
        int made = 0;
        const ExitCode code = readAgain(job, memory->bytes, times, m_reporter, differences, &made);
        if (code != ExitCode::Done)
            return failWith(code, QStringLiteral("not read twice, see above"), memory);
        memory->reads += made;
        return true;
    }

    QString romSuffix() const
    {
        if (m_values.system == kSystemGba)
            return QStringLiteral(".gba");
        const bool hasColor = m_report.header.size() > kColorFlagOffset &&
                              (m_report.header[kColorFlagOffset] & kColorFlag) != 0;
        return hasColor ? QStringLiteral(".gbc") : QStringLiteral(".gb");
    }

    // The reads that the table does not make needless.
    int moreReads(bool isKnown) const
    {
        if (m_options.reads != 0)
            return m_options.reads - 1;
        return isKnown ? 0 : 1;
    }

    // A GBA game that no table knows says nothing of its size; it ends where the ROM repeats or
    // stops to answer.
    void cutToContent(RomEvidence *evidence, BackedUpMemory *rom)
    {
        if (!isUnknownGbaGame(m_report) || evidence->checks.tail == DumpTail::None)
            return;
        rom->bytes.truncate(static_cast<int>(evidence->checks.contentSize));
        rom->sha1 = QCryptographicHash::hash(rom->bytes, QCryptographicHash::Sha1);
        *evidence = evidenceOf(rom->bytes, rom->sha1, m_tables);
    }

    // Returns: true if the folder holds these bytes already.
    bool backUpRom()
    {
        BackedUpMemory &rom = m_record.rom;
        if (isUnknownGbaGame(m_report))
            m_values.romSize = kLargestGbaRom;
        CliJob job;
        if (!makeJob("dump", &job, &rom) || !read(job, &rom))
            return false;
        const QByteArray whole = rom.bytes;
        RomEvidence evidence = evidenceOf(rom.bytes, rom.sha1, m_tables);
        cutToContent(&evidence, &rom);
        BackedUpMemory compared = rom;
        compared.bytes = whole;
        if (!readMore(job, moreReads(evidence.known.has_value()), &compared, &evidence.differences))
            return failWith(m_result.code, compared.verdict, &rom);
        rom.reads = evidence.reads = compared.reads;
        const Verdict verdict = judgeRom(evidence);
        if (verdict.kind == VerdictKind::Verified)
            m_result.title = verdict.title;
        return keep(verdict, romSuffix(), false, &rom);
    }

    // An MMM01 is multiplexed for more than 512 KiB of ROM, and keeps that until power-off.
    bool isLockedByRomJob() const
    {
        const auto type = static_cast<std::uint8_t>(m_report.header[kTypeOffset]);
        return m_values.system == kSystemGb && type >= kFirstMmm01Type && type <= kLastMmm01Type &&
               m_values.romSize.value_or(0) > kPlainMmm01Rom;
    }

    // A ROM takes its time, and who is in a hurry swaps before its end.
    bool isSameCartridge() const
    {
        return detectCartridge([](const QString &) {}).header == m_report.header;
    }

    bool backUpSave()
    {
        BackedUpMemory &save = m_record.save;
        const QString danger = dangerOf(m_report, *findCliCommand(QStringLiteral("read-ram")));
        if (!danger.isEmpty())
            return failWith(ExitCode::Refused, QStringLiteral("not read: ") + danger, &save);
        if (m_values.ramSize && isLockedByRomJob())
            return failWith(ExitCode::Refused,
                            QStringLiteral("not read: after a ROM of this size an MMM01 shows its "
                                           "save in pieces until it is taken out; use read-ram"),
                            &save);
        if (!m_values.ramSize) {
            save.verdict = isUnknownGbaGame(m_report)
                               ? QStringLiteral("not read: no table knows this game; use read-ram "
                                                "with --save-type and --ram-size")
                               : QStringLiteral("none");
            if (isUnknownGbaGame(m_report))
                note(ExitCode::NotRecognised);
            return !isUnknownGbaGame(m_report);
        }
        if (!isSameCartridge())
            return failWith(ExitCode::DataMismatch,
                            QStringLiteral("not read: the cartridge was changed meanwhile"), &save);
        CliJob job;
        SaveEvidence evidence;
        if (!makeJob("read-ram", &job, &save) || !read(job, &save) ||
            !readMore(job, qMax(1, m_options.reads - 1), &save, &evidence.differences))
            return false;
        evidence.reads = save.reads;
        describeSave(save.bytes, &evidence);
        return keep(judgeSave(evidence), QStringLiteral(".sav"), true, &save);
    }

    // A file of the folder that holds these bytes; empty if there is none.
    QString sameFile(const BackedUpMemory &memory, const QString &suffix) const
    {
        const QDir folder(m_options.path);
        const QString name = safeFileName(m_result.title);
        const QFileInfoList files = folder.entryInfoList({QLatin1Char('*') + suffix},
                                                         QDir::Files | QDir::Readable, QDir::Name);
        for (const QFileInfo &file : files) {
            if (file.fileName().startsWith(name) && file.size() == memory.bytes.size() &&
                fileSha1(file.filePath()) == QLatin1String(memory.sha1.toHex()))
                return file.filePath();
        }
        return {};
    }

    // Keeps the good name for a good read. A save that is suspicious may well be an empty one.
    static QString markOf(VerdictKind kind, bool isSave)
    {
        if (kind == VerdictKind::Unstable)
            return QStringLiteral(".unstable");
        return kind == VerdictKind::Suspicious && !isSave ? QStringLiteral(".suspicious")
                                                          : QString();
    }

    // Returns: true if nothing had to be written.
    bool keep(const Verdict &verdict, const QString &suffix, bool isDated, BackedUpMemory *memory)
    {
        note(exitCodeOf(verdict.kind));
        memory->path = sameFile(*memory, suffix);
        const bool isThere = !memory->path.isEmpty();
        const QString end = suffix + markOf(verdict.kind, isDated);
        if (!isThere && !writeNew(isDated, end, memory))
            return false;
        memory->verdict =
            summaryOf(verdict) + (isThere ? QStringLiteral("; already there") : QString());
        tellVerdict(verdict, factsOf(*memory), m_reporter);
        return isThere;
    }

    bool writeNew(bool isDated, const QString &suffix, BackedUpMemory *memory)
    {
        const QString title = safeFileName(m_result.title);
        const QString path = isDated ? datedPath(m_options.path, title, m_record.begin, suffix)
                                     : freePath(m_options.path, title, suffix);
        PendingFile file(path, ExistingFile::Keep);
        if (!file.problem().isEmpty() || !file.write(memory->bytes) || !file.commit()) {
            m_reporter.problem(file.problem());
            return failWith(ExitCode::FileError, QStringLiteral("not written, see above"), memory);
        }
        memory->path = path;
        return true;
    }

    void writeReport()
    {
        m_record.title = m_result.title;
        m_record.values = m_values;
        m_record.end = QDateTime::currentDateTime();
        m_record.scriptSha1 = fileSha1(QCoreApplication::applicationDirPath() +
                                       QStringLiteral("/mapper/") + m_record.script);
        BackedUpMemory text;
        text.bytes = reportText(m_record).toUtf8();
        if (!writeNew(true, QStringLiteral(".txt"), &text))
            note(ExitCode::FileError);
    }

    const CartridgeReport &m_report;
    const CliOptions &m_options;
    const QVector<DatFile> &m_tables;
    Reporter &m_reporter;
    CartridgeValues m_values;
    BackupRecord m_record;
    CartridgeBackup m_result;
};

} // namespace

CartridgeBackup backUpCartridge(const CartridgeReport &report, const CliOptions &options,
                                const QVector<DatFile> &tables, Reporter &reporter)
{
    return Backup(report, options, tables, reporter).run();
}
