#include "cli/save_commands.h"

#include "cart/setting_tables.h"
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
constexpr int kSmallFlash = 64 * 1024;

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

// A chip that is erased as a whole and may be larger than the job believes: everything in it has to
// be in the backup. A 64 KiB chip that is read as 128 KiB repeats itself or answers nothing.
ExitCode refuseLargerFlash(const CliJob &writeJob, Reporter &reporter)
{
    if (writeJob.saveType != kSaveFlash || writeJob.ramSize != kSmallFlash)
        return ExitCode::Done;
    CliJob job = readingJob(writeJob);
    job.ramSize = 2 * kSmallFlash;
    QByteArray bytes;
    const ExitCode code =
        readToMemory(job, "compare", JobLog::ToldOnFailure, reporter, &bytes).code;
    if (code != ExitCode::Done)
        return code;
    const QByteArray upper = bytes.mid(kSmallFlash);
    if (upper == bytes.left(kSmallFlash) || upper.count(upper[0]) == upper.size())
        return ExitCode::Done;
    reporter.problem(QStringLiteral("The save chip holds 128 KiB, and the write would erase all of "
                                    "it: give --ram-size 128K. The cartridge was only read."));
    return ExitCode::Refused;
}

// The cartridge, or the game table, names another save than the user: one of them is wrong, and a
// write with the wrong commands destroys what a read with them does not show.
ExitCode refuseContradiction(const CliOptions &options, const CartridgeLook &look,
                             Reporter &reporter)
{
    const CartridgeValues &said = options.values;
    const bool isOtherSize =
        look.found.ramSize && said.ramSize && said.ramSize != look.found.ramSize;
    const bool isOtherType =
        look.found.saveType && said.saveType && said.saveType != look.found.saveType;
    if (options.forces || !(isOtherSize || isOtherType))
        return ExitCode::Done;
    reporter.problem(QStringLiteral("The cartridge says something else of its save than --ram-size "
                                    "or --save-type, see above. Leave the options out, or give "
                                    "--force if you know better. It was only looked at."));
    return ExitCode::Refused;
}

// Without a backup a shorter file still needs the rest of the save, read twice like a backup.
KeptBackup readRest(const CliJob &readJob, Reporter &reporter)
{
    KeptBackup rest;
    QString differences;
    rest.code = readToMemory(readJob, "backup", JobLog::ToldOnFailure, reporter, &rest.bytes).code;
    if (rest.code == ExitCode::Done)
        rest.code = readAgain(readJob, rest.bytes, 1, reporter, &differences);
    if (rest.code != ExitCode::Done || differences.isEmpty())
        return rest;
    reporter.problem(QStringLiteral("Two reads of the cartridge differ (%1), so the part of the "
                                    "save that the file lacks is not known. Nothing was written.")
                         .arg(differences));
    rest.code = ExitCode::DataMismatch;
    return rest;
}

// What the cartridge holds, as far as it is needed.
KeptBackup backUp(const CliOptions &options, const CartridgeLook &look, const CliJob &job,
                  int fileSize, Reporter &reporter)
{
    if (!options.makesBackup)
        return fileSize < job.ramSize ? readRest(readingJob(job), reporter) : KeptBackup{};
    KeptBackup backup;
    backup.code = refuseLargerFlash(job, reporter);
    if (backup.code != ExitCode::Done)
        return backup;
    return keepBackup({readingJob(job), options.backupFolder, look.title, options.forces, false},
                      reporter);
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
    if (code == ExitCode::Done)
        code = refuseContradiction(options, look, reporter);
    if (code != ExitCode::Done)
        return code;
    const KeptBackup backup = backUp(options, look, job, file.size(), reporter);
    if (backup.code != ExitCode::Done)
        return backup.code;
    return writeAndCheck(job, readingJob(job), newContent(file, backup.bytes, job.ramSize), backup,
                         reporter);
}
