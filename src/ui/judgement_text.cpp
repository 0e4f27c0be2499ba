#include "ui/judgement_text.h"

#include "trust/judgement_words.h"
#include "trust/words.h"
#include "worker/log_text.h"

#include <QCoreApplication>

#include <array>

const char kLogRule[] = "<hr><br>";

namespace
{

struct Judgement {
    Q_DECLARE_TR_FUNCTIONS(Judgement)
};

enum class Tone { Good, Warning, Bad };

// Dark on light: readable on the steel blue of the log, and the word tells it without the colour.
struct ToneColors {
    const char *background;
    const char *text;
};
constexpr std::array<ToneColors, 3> kColors = {
    {{"#e3f4e1", "#11430f"}, {"#fff3c9", "#4d3600"}, {"#ffe1dd", "#6b0d06"}}};

Tone toneOf(JudgementKind kind)
{
    switch (kind) {
    case JudgementKind::Verified:
    case JudgementKind::Consistent:
    case JudgementKind::Written:
        return Tone::Good;
    case JudgementKind::Unverified:
    case JudgementKind::Stopped:
        return Tone::Warning;
    case JudgementKind::Unstable:
    case JudgementKind::Suspicious:
    case JudgementKind::Incomplete:
    case JudgementKind::Failed:
    case JudgementKind::Refused:
        break;
    }
    return Tone::Bad;
}

Tone toneOf(const JudgedJob &judged)
{
    const bool isCut = judged.fileBytes > judged.bytes;
    return judged.kind == JudgementKind::Written && (isCut || !judged.isCompared)
               ? Tone::Warning
               : toneOf(judged.kind);
}

QString entryOf(Tone tone, const QString &line)
{
    const ToneColors &colors = kColors[static_cast<std::size_t>(tone)];
    return QStringLiteral("<span style=\"background-color: %1; color: %2; white-space: pre-wrap;\">"
                          "%3</span>")
        .arg(QLatin1String(colors.background), QLatin1String(colors.text), markupOf(line));
}

QString readAdvice(const JudgedJob &judged)
{
    switch (judged.kind) {
    case JudgementKind::Unverified:
        return judged.reads == 1 ? Judgement::tr("\"Read again and compare\" in the menu at the "
                                                 "top right shows whether two "
                                                 "reads are equal.")
                                 : QString();
    case JudgementKind::Unstable:
        return Judgement::tr(
            "Do not use this file. Clean the contacts, push the cartridge in again and read "
            "it once more.");
    case JudgementKind::Suspicious:
        return judged.reads == 0
                   ? QString()
                   : Judgement::tr(
                         "Do not trust this file. See that the settings are right (Info selects "
                         "them), clean the contacts, push the cartridge in again and read it once "
                         "more.");
    default:
        return QString();
    }
}

QString readerAdvice(const Outcome &outcome)
{
    switch (outcome.job.end) {
    case JobEnd::ReaderInUse:
        return Judgement::tr(
            "Leave the reader plugged in, wait until the other program has ended, and try "
            "again.");
    case JobEnd::NotTheReader:
        return Judgement::tr(
            "Take that drive out. \"Why is no reader found?\" in the menu at the top right "
            "tells more.");
    case JobEnd::NoReader:
    case JobEnd::NoMode:
        return Judgement::tr(
            "Plug the reader in again. \"Why is no reader found?\" in the menu at the top "
            "right tells more.");
    case JobEnd::Done:
    case JobEnd::ScriptFailed:
        return Judgement::tr(
            "Check the plug of the reader and the contacts of the cartridge, and try again.");
    default:
        return QString();
    }
}

QString failureAdvice(const Outcome &outcome)
{
    const bool isJob =
        outcome.trouble == Trouble::JobFailed || outcome.trouble == Trouble::NotReadBack;
    return isJob ? readerAdvice(outcome) : QString();
}

// The write has, or may have, changed the cartridge.
bool hasChanged(CartridgeState state)
{
    return state == CartridgeState::PartlyWritten || state == CartridgeState::PartlyErased ||
           state == CartridgeState::Written;
}

QString backupNote(const JudgedJob &judged, const JudgementNotes &notes)
{
    const QString &path = notes.backupPath;
    if (path.isEmpty() || !hasChanged(judged.outcome.state))
        return QString();
    QString kept = Judgement::tr("What the cartridge held before is in %1").arg(path);
    if (notes.keepsWhatIsShown)
        kept += QLatin1Char('\n') +
                Judgement::tr("The chip does not say how large it is; this is what the "
                              "mapper shows of it.");
    if (judged.outcome.isDone())
        return kept;
    return kept + QLatin1Char('\n') +
           (isFlashJob(judged.job.operate)
                ? Judgement::tr("To put it back, write that file with FLASH.")
                : Judgement::tr("To put it back, write that file with Write RAM."));
}

void appendUnlessEmpty(const QString &advice, QStringList *entries)
{
    if (!advice.isEmpty())
        *entries << adviceEntry(advice);
}

// The other setting that may help; empty if only the switch does.
QString otherSetting(const WriteGuard &guard)
{
    if (guard.fault == GuardFault::OtherSystem || guard.fault == GuardFault::Contradiction)
        return Judgement::tr("Press Info to select what the cartridge says of itself.");
    if (guard.fault == GuardFault::Target)
        return Judgement::tr("Choose another name or folder, or make room.");
    if (guard.fault == GuardFault::NoChip)
        return Judgement::tr(
            "Push the cartridge in again, or tick \"Verify the data after writing\".");
    if (guard.flash == FlashFault::NoFlashChip || guard.flash == FlashFault::BackupTooSmall ||
        guard.flash == FlashFault::BackupRepeats)
        return Judgement::tr("Choose the mapper of the board, whatever the header says.");
    switch (guard.outcome.trouble) {
    case Trouble::SaveIsBlank:
        return Judgement::tr("See that the settings are right and that the contacts are clean.");
    case Trouble::SaveIsLarger:
        return Judgement::tr("Choose 128 K.");
    case Trouble::NoFolder:
    case Trouble::NoFile:
        return Judgement::tr("Make room in the backup folder, or see that you may write there.");
    default:
        return failureAdvice(guard.outcome);
    }
}

// Without a reader, or beyond the bus, the switch would help nobody.
bool isHelpedBySwitch(const WriteGuard &guard)
{
    if (guard.fault == GuardFault::BeyondBus || guard.fault == GuardFault::Target)
        return false;
    return guard.fault != GuardFault::Trouble || guard.outcome.trouble != Trouble::JobFailed;
}

} // namespace

QString adviceEntry(const QString &advice)
{
    return QStringLiteral("<span style=\"white-space: pre-wrap;\">%1</span>").arg(markupOf(advice));
}

QString tableProblemEntry(const QString &problem)
{
    return adviceEntry(Judgement::tr("Not looked up: %1").arg(problem));
}

QString judgementEntry(JudgementKind kind, const QString &line)
{
    return entryOf(toneOf(kind), line);
}

QString warningEntry(const QString &warning)
{
    return entryOf(Tone::Warning, warning);
}

QStringList judgementEntries(const JudgedJob &judged, const JudgementNotes &notes)
{
    QStringList entries{entryOf(toneOf(judged), judgementLine(judged))};
    if (!judged.sha1.isEmpty())
        entries << adviceEntry(Judgement::tr("%1 bytes, SHA-1 %2")
                                   .arg(judged.bytes)
                                   .arg(QString::fromLatin1(judged.sha1.toHex())));
    appendUnlessEmpty(readAdvice(judged), &entries);
    appendUnlessEmpty(failureAdvice(judged.outcome), &entries);
    appendUnlessEmpty(backupNote(judged, notes), &entries);
    if (judged.bytes > 0 && movesSave(judged.job.operate) && judged.bytes < notes.savedBytes)
        entries << adviceEntry(
            Judgement::tr("The cartridge that Info has seen has %1 bytes of save memory, "
                          "and only %2 of them were "
                          "moved. Choose the larger size.")
                .arg(notes.savedBytes)
                .arg(judged.bytes));
    for (const QString &problem : judged.tableProblems)
        entries << tableProblemEntry(problem);
    if (!notes.oldFilePath.isEmpty())
        entries << adviceEntry(
            Judgement::tr("The file that was there before is in %1").arg(notes.oldFilePath));
    if (!notes.leftBehind.isEmpty())
        entries << adviceEntry(
            Judgement::tr("Left by a program that was ended: %1\n\"gbdriver-cli tidy\" "
                          "removes such files.")
                .arg(notes.leftBehind.join(QStringLiteral("\n"))));
    return entries << QString::fromLatin1(kLogRule);
}

QStringList refusalEntries(const WriteGuard &guard)
{
    // The reason stands before the rule; what it comes to is that nothing was begun.
    const bool isStopped =
        guard.fault == GuardFault::Trouble && guard.outcome.trouble == Trouble::Stopped;
    const JudgementKind kind = isStopped ? JudgementKind::Stopped : JudgementKind::Refused;
    const bool isRead =
        guard.fault == GuardFault::BeyondBus || guard.outcome.state == CartridgeState::NotRead;
    const QString &kept = guard.backup.path;
    const CartridgeState state = isRead ? CartridgeState::NotRead : guard.outcome.state;
    QStringList entries{judgementEntry(kind, judgedText(kind, stateText(state)))};
    appendUnlessEmpty(otherSetting(guard), &entries);
    if (kind != JudgementKind::Stopped && isHelpedBySwitch(guard))
        entries << adviceEntry(
            isRead ? Judgement::tr(
                         "If you know better, turn \"Guard writes\" off in the menu at the top "
                         "right.")
                   : Judgement::tr(
                         "If you know better, turn \"Guard writes\" off in the menu at the top "
                         "right; then no backup is made."));
    if (!kept.isEmpty())
        entries << adviceEntry(Judgement::tr("What was read of the cartridge is in %1").arg(kept));
    return entries << QString::fromLatin1(kLogRule);
}

QStringList outcomeEntries(const Outcome &outcome)
{
    const JudgementKind kind = judgementOf(outcome);
    QStringList entries{judgementEntry(kind, judgedText(kind, judgementText(outcome)))};
    appendUnlessEmpty(failureAdvice(outcome), &entries);
    return entries << QString::fromLatin1(kLogRule);
}

QStringList modeFaultEntries(JobEnd fault, const QString &driveError)
{
    if (fault != JobEnd::ReaderInUse && fault != JobEnd::NotTheReader)
        return {};
    Outcome outcome;
    outcome.trouble = Trouble::JobFailed;
    outcome.job.end = fault;
    outcome.job.driveError = driveError;
    return outcomeEntries(outcome);
}
