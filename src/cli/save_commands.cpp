#include "cli/save_commands.h"

#include "cli/cartridge_look.h"
#include "cli/interrupt.h"
#include "cli/kept_backup.h"
#include "cli/kept_read.h"
#include "cli/pending_file.h"
#include "cli/repeated_read.h"
#include "cli/verdict.h"
#include "cli/write_check.h"
#include "worker/famicom_thread.h"

namespace
{

constexpr int kDefaultReads = 2;

int readsWanted(const CliOptions &options)
{
    if (!options.verifies)
        return 1;
    return options.reads == 0 ? kDefaultReads : options.reads;
}

// The job that reads what `writeJob` writes.
CliJob readingJob(const CliJob &writeJob)
{
    CliJob job = writeJob;
    job.operate = writeJob.operate == GBA_WRITE_RAM ? GBA_READ_RAM : GB_READ_RAM;
    return job;
}

// The file, and whether it is a save of this cartridge.
ExitCode takeSaveFile(const CliOptions &options, int saveSize, Reporter &reporter,
                      QByteArray *bytes)
{
    QString problem;
    if (!readUserFile(options.path, bytes, &problem)) {
        reporter.problem(problem + QStringLiteral(" The cartridge was not touched."));
        return ExitCode::FileError;
    }
    if (bytes->size() == saveSize)
        return ExitCode::Done;
    const QString sizes = QStringLiteral("%1 has %2 bytes, the save of the cartridge has %3.")
                              .arg(options.path)
                              .arg(bytes->size())
                              .arg(saveSize);
    if (options.forces && !bytes->isEmpty()) {
        reporter.log(sizes + QStringLiteral(" Only what fits is written (--force)."));
        return ExitCode::Done;
    }
    reporter.problem(sizes +
                     QStringLiteral(" It is not a save of this game, or --ram-size or --save-type "
                                    "is wrong. --force writes what fits. The cartridge was only "
                                    "looked at."));
    return ExitCode::Refused;
}

// What the cartridge is to hold: a shorter file leaves the rest as it is.
QByteArray newContent(const QByteArray &file, const QByteArray &old, int saveSize)
{
    QByteArray content = file.left(saveSize);
    return content + old.mid(content.size());
}

} // namespace

ExitCode runReadRam(const CliOptions &options, Reporter &reporter)
{
    KeptRead read(options, reporter);
    if (!read.begin())
        return read.code();
    QString differences;
    const int reads = readsWanted(options);
    if (!read.readOnce() || !read.readAgain(reads - 1, &differences))
        return read.code();
    SaveEvidence evidence;
    describeSave(read.bytes(), &evidence);
    evidence.reads = reads;
    evidence.differences = differences;
    return read.finish(judgeSave(evidence));
}

ExitCode runWriteRam(const CliOptions &options, Reporter &reporter)
{
    const CartridgeLook look = lookAtCartridge(options, reporter);
    if (look.code != ExitCode::Done)
        return look.code;
    CliJob job;
    ExitCode code = completeLookedAtJob(options, look, options.path, reporter, &job);
    QByteArray file;
    if (code == ExitCode::Done)
        code = takeSaveFile(options, job.ramSize, reporter, &file);
    if (code != ExitCode::Done)
        return code;

    KeptBackup backup;
    if (options.makesBackup)
        backup = keepBackup(readingJob(job), options.backupFolder, look.title, reporter);
    else if (file.size() < job.ramSize)
        backup.code =
            readToMemory(readingJob(job), "backup", JobLog::ToldOnFailure, reporter, &backup.bytes)
                .code;
    if (backup.code != ExitCode::Done)
        return backup.code;
    return writeAndCheck(job, readingJob(job), newContent(file, backup.bytes, job.ramSize), backup,
                         reporter);
}
