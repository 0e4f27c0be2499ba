#include "trust/judged_job.h"

#include "trust/cartridge_task.h"
#include "trust/dat_folder.h"
#include "trust/flash_check.h"
#include "trust/known_titles.h"
#include "trust/pending_file.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QFileInfo>

namespace
{

JudgedJob failed(const CartridgeJob &job, const Outcome &outcome)
{
    JudgedJob judged;
    judged.kind = judgementOf(outcome);
    judged.job = job;
    judged.outcome = outcome;
    return judged;
}

JudgedJob failedJob(const FinishedJob &finished, Phase phase)
{
    Outcome outcome;
    outcome.trouble = Trouble::JobFailed;
    outcome.phase = phase;
    outcome.job = finished.result;
    outcome.state = stateAfter(finished.job, finished.result);
    if (phase == Phase::Write && outcome.state == CartridgeState::Untouched)
        outcome.state = unwritten(finished.before);
    if (finished.result.end == JobEnd::NoScript)
        outcome.detail = finished.job.scriptPath;
    return failed(finished.job, outcome);
}

JudgedJob unreadFile(const CartridgeJob &job, const FileTrouble &trouble, CartridgeState state)
{
    Outcome outcome;
    outcome.trouble = Trouble::NoFile;
    outcome.state = state;
    outcome.file = trouble;
    return failed(job, outcome);
}

Verdict verdictOf(const CheckedRead &read, const std::optional<RomEvidence> &rom)
{
    if (rom) {
        RomEvidence evidence = *rom;
        evidence.reads = read.reads;
        evidence.differences = read.differences;
        return judgeRom(evidence);
    }
    SaveEvidence evidence;
    describeSave(read.bytes, &evidence);
    evidence.reads = read.reads;
    evidence.differences = read.differences;
    return judgeSave(evidence);
}

enum class SecondRead { Never, OfWhatIsUnknown, Always };

// `reads`: that were made of what the file holds; `state`: that they left.
JudgedJob judgeFile(const CartridgeJob &job, const QString &path, int reads, CartridgeState state,
                    SecondRead second, TrustListener *listener)
{
    CheckedRead read;
    const FileTrouble unread = readUserFile(path, &read.bytes);
    if (!unread.isNone())
        return unreadFile(job, unread, state);
    read.reads = reads;
    read.outcome.state = state;
    read.sha1 = QCryptographicHash::hash(read.bytes, QCryptographicHash::Sha1);
    std::optional<RomEvidence> rom;
    DatFolder own;
    if (!movesSave(job.operate)) {
        rom = evidenceOf(read.bytes, read.sha1, {});
        if (!rom->known) {
            own = readDatFolder(datFolder());
            rom->known = findKnown(rom->size, read.sha1, own.tables);
        }
    }
    const bool isKnown = rom && rom->known;
    if (second == SecondRead::Always || (second == SecondRead::OfWhatIsUnknown && !isKnown))
        readAgain(job, 1, *listener, &read);
    // Whoever stops the second read still has the first one.
    if (!read.outcome.isDone() && read.outcome.trouble != Trouble::Stopped)
        return failed(job, read.outcome);
    JudgedJob judged;
    judged.job = job;
    judged.verdict = verdictOf(read, rom);
    judged.kind = judgementOf(judged.verdict.kind);
    judged.bytes = read.bytes.size();
    judged.sha1 = read.sha1;
    judged.reads = read.reads;
    judged.tableProblems = own.problems;
    return judged;
}

CartridgeJob readingJob(const CartridgeJob &writeJob, int bytes)
{
    return movesSave(writeJob.operate) ? saveReadingJob(writeJob)
                                       : romReadingJob(writeJob, romSizeOf(bytes));
}

} // namespace

JudgedJob judgeRead(const FinishedJob &finished, bool readsAgain, TrustListener &listener)
{
    if (!finished.result.isWhole())
        return failedJob(finished, Phase::Read);
    return judgeFile(finished.job, finished.path, 1, stateAfter(finished.job, finished.result),
                     readsAgain ? SecondRead::OfWhatIsUnknown : SecondRead::Never, &listener);
}

JudgedJob judgeWrite(const FinishedJob &finished, bool compares, TrustListener &listener)
{
    if (!finished.result.isWhole())
        return failedJob(finished, Phase::Write);
    const int bytes = finished.result.wantedBytes;
    JudgedJob judged;
    judged.kind = JudgementKind::Written;
    judged.job = finished.job;
    judged.bytes = bytes;
    judged.fileBytes = QFileInfo(finished.path).size();
    judged.isCompared = compares;
    judged.outcome.state = CartridgeState::Written;
    if (!compares)
        return judged;
    QByteArray file;
    FileTrouble unread = readUserFile(finished.path, &file);
    if (unread.isNone() && file.size() < bytes)
        unread = {FileFault::NotRead, finished.path,
                  QCoreApplication::translate("Words", "it has become shorter")};
    if (!unread.isNone())
        return unreadFile(finished.job, unread, CartridgeState::Written);
    const CheckedWrite checked =
        checkWritten(readingJob(finished.job, bytes), file.left(bytes), listener);
    judged.outcome = checked.outcome;
    judged.mismatch = checked.mismatch;
    if (!checked.outcome.isDone())
        judged.kind = judgementOf(checked.outcome);
    return judged;
}

JudgedJob compareAgain(const FinishedJob &finished, TrustListener &listener)
{
    return judgeFile(finished.job, finished.path, 1, stateAfter(finished.job, finished.result),
                     SecondRead::Always, &listener);
}

JudgedJob judgeRomFile(const QString &path)
{
    return judgeFile({}, path, 0, CartridgeState::Untouched, SecondRead::Never, nullptr);
}
