// The commands that read something and say what it is worth: dump, read-ram, verify.
#include "cli/commands.h"

#include "cli/cartridge_look.h"
#include "cli/cli_listener.h"
#include "cli/interrupt.h"
#include "cli/known_tables.h"
#include "cli/telling.h"
#include "trust/backup_store.h"
#include "trust/checked_read.h"
#include "trust/known_titles.h"
#include "trust/pending_file.h"
#include "trust/words.h"

#include <QCryptographicHash>

#include <memory>

namespace
{

// A read of a cartridge that ends in a file of the user's, step by step. Every step tells what went
// wrong and leaves the reason in code(); nothing is left under the file's name then.
class ReadIntoFile
{
public:
    ReadIntoFile(const CliOptions &options, CartridgeTask task, Reporter &reporter)
        : m_options(options), m_task(task), m_reporter(reporter), m_listener(reporter)
    {
    }

    // Sees that the file can be made, looks at the cartridge, makes the job.
    bool begin()
    {
        m_file = std::make_unique<PendingFile>(
            m_options.path, m_options.overwrites ? ExistingFile::Replace : ExistingFile::Keep);
        const FileTrouble &trouble = m_file->trouble();
        if (trouble.fault == FileFault::Exists)
            return fail(ExitCode::Refused,
                        fileTroubleText(trouble) +
                            QStringLiteral(" Choose another name, or replace it with --overwrite."),
                        CartridgeState::NotRead);
        if (!trouble.isNone())
            return fail(ExitCode::FileError, fileTroubleText(trouble), CartridgeState::NotRead);
        m_isStream = m_file->isStream();
        const CartridgeLook look = lookAtCartridge(m_options, m_task, m_reporter);
        m_code = look.code;
        if (m_code == ExitCode::Done)
            m_code = makeLookedAtJob(m_options, m_task, look, m_reporter, &m_job);
        if (m_code == ExitCode::Done && !m_file->reserve(bytesToMove(m_job)))
            return fail(ExitCode::FileError, fileTroubleText(m_file->trouble()),
                        CartridgeState::NotRead);
        return m_code == ExitCode::Done && !isStopped();
    }

    // The file is written at once, under its temporary name: a full disk shows before the next
    // read.
    bool readFirst()
    {
        m_read = readOnce(m_job, Phase::Read, m_listener);
        m_code = tellTrouble(m_read.outcome, m_reporter);
        if (m_code == ExitCode::Done && !m_file->write(m_read.bytes))
            return fail(ExitCode::FileError, fileTroubleText(m_file->trouble()));
        if (m_code != ExitCode::Done || !isStopped())
            return m_code == ExitCode::Done;
        keepFirst();
        return false;
    }

    bool readMore(int times)
    {
        readAgain(m_job, times, m_listener, &m_read);
        m_code = tellTrouble(m_read.outcome, m_reporter);
        if (m_code != ExitCode::Done)
            keepFirst();
        return m_code == ExitCode::Done;
    }

    // Names the file and tells the verdict.
    ExitCode finish(const Verdict &verdict)
    {
        const QString path = m_isStream
                                 ? m_options.path
                                 : keptReadPath(m_options.path, verdict.kind, m_options.overwrites);
        if (!m_file->commit(path)) {
            fail(ExitCode::FileError, fileTroubleText(m_file->trouble()));
            keepFirst();
            return m_code;
        }
        tellVerdict(verdict, {path, m_read.bytes.size(), m_read.sha1, m_read.reads}, m_reporter);
        return exitCodeOf(verdict.kind);
    }

    ExitCode code() const { return m_code; }
    const CheckedRead &read() const { return m_read; }

private:
    // The first read is complete, and what came behind it has failed. Where a pipe or a device was
    // to take it, it is not worth more than nothing.
    void keepFirst()
    {
        if (m_isStream)
            return;
        const QString path = unverifiedPath(m_options.path);
        m_file.reset();
        PendingFile kept(path, ExistingFile::Keep);
        if (kept.trouble().isNone() && kept.write(m_read.bytes) && kept.commit())
            m_reporter.problem(
                QStringLiteral("What was read once, and not compared, is in %1").arg(path));
        else
            m_reporter.problem(fileTroubleText(kept.trouble()));
    }

    bool fail(ExitCode code, const QString &problem)
    {
        m_code = code;
        m_reporter.problem(problem);
        return false;
    }

    bool fail(ExitCode code, const QString &problem, CartridgeState state)
    {
        m_code = tellProblem(code, problem, state, m_reporter);
        return false;
    }

    bool isStopped()
    {
        if (!wasInterrupted())
            return false;
        const CartridgeState before =
            m_options.looks ? CartridgeState::LookedAt : CartridgeState::Untouched;
        fail(ExitCode::Cancelled,
             m_read.reads == 0 ? QStringLiteral("Asked to stop; no file was made.")
                               : QStringLiteral("Asked to stop after the read."),
             m_read.reads == 0 ? before : m_read.outcome.state);
        return true;
    }

    const CliOptions &m_options;
    CartridgeTask m_task;
    Reporter &m_reporter;
    CliListener m_listener;
    std::unique_ptr<PendingFile> m_file;
    CartridgeJob m_job;
    CheckedRead m_read;
    ExitCode m_code = ExitCode::Done;
    bool m_isStream = false;
};

// `usual`: without an option.
int readsWanted(const CliOptions &options, int usual)
{
    if (!options.verifies)
        return 1;
    return options.reads == 0 ? usual : options.reads;
}

} // namespace

ExitCode runDump(const CliOptions &options, Reporter &reporter)
{
    QVector<DatFile> tables;
    if (!readTables(options.datFiles, &tables, reporter))
        return ExitCode::FileError;
    ReadIntoFile file(options, CartridgeTask::Dump, reporter);
    if (!file.begin() || !file.readFirst())
        return file.code();
    RomEvidence evidence = evidenceOf(file.read().bytes, file.read().sha1, tables);
    if (!file.readMore(readsWanted(options, evidence.known ? 1 : 2) - 1))
        return file.code();
    evidence.reads = file.read().reads;
    evidence.differences = file.read().differences;
    return file.finish(judgeRom(evidence));
}

ExitCode runReadRam(const CliOptions &options, Reporter &reporter)
{
    ReadIntoFile file(options, CartridgeTask::ReadSave, reporter);
    if (!file.begin() || !file.readFirst() || !file.readMore(readsWanted(options, 2) - 1))
        return file.code();
    SaveEvidence evidence;
    describeSave(file.read().bytes, &evidence);
    evidence.reads = file.read().reads;
    evidence.differences = file.read().differences;
    return file.finish(judgeSave(evidence));
}

ExitCode runVerify(const CliOptions &options, Reporter &reporter)
{
    QVector<DatFile> tables;
    QByteArray bytes;
    if (!readTables(options.datFiles, &tables, reporter))
        return ExitCode::FileError;
    const FileTrouble trouble = readUserFile(options.path, &bytes);
    if (!trouble.isNone()) {
        reporter.problem(fileTroubleText(trouble));
        return ExitCode::FileError;
    }
    const QByteArray sha1 = QCryptographicHash::hash(bytes, QCryptographicHash::Sha1);
    const Verdict verdict = judgeRom(evidenceOf(bytes, sha1, tables));
    tellVerdict(verdict, {options.path, bytes.size(), sha1, 0}, reporter);
    return exitCodeOf(verdict.kind);
}
