// The command drives: what the program sees, and why a drive is or is not taken as the reader.
#include "cli/commands.h"

#include "device/drive_advice.h"
#include "device/drive_finding.h"
#include "virtual/backend_choice.h"

#include <algorithm>

using namespace virtual_reader;

namespace
{

const char *typeWord(DriveType type)
{
    constexpr const char *kWords[] = {"unknown", "none",  "removable", "fixed",
                                      "remote",  "cdrom", "ramdisk"};
    const auto row = static_cast<std::size_t>(type);
    return row < std::size(kWords) ? kWords[row] : kWords[0];
}

const char *verdictWord(DriveVerdict verdict)
{
    switch (verdict) {
    case DriveVerdict::NotRemovable:
        return "not-removable";
    case DriveVerdict::NoIdentity:
        return "no-identity";
    case DriveVerdict::Taken:
        return "taken";
    case DriveVerdict::AlsoPasses:
        return "also-passes";
    }
    return "";
}

void addRemovable(const DriveFinding &finding, QJsonObject *object)
{
    if (finding.labelError.isEmpty())
        object->insert(QStringLiteral("label"), finding.label);
    else
        object->insert(QStringLiteral("labelError"), finding.labelError);
    if (finding.hasIdentity())
        object->insert(QStringLiteral("identity"), finding.identity);
    object->insert(QStringLiteral("identityFile"), fileText(finding.identityFile));
    object->insert(QStringLiteral("commandFile"), fileText(finding.command));
    object->insert(QStringLiteral("dumpFile"), fileText(finding.dump));
}

QJsonObject driveObject(const DriveFinding &finding)
{
    QJsonObject object{{QStringLiteral("what"), QStringLiteral("drive")},
                       {QStringLiteral("drive"), QString(QLatin1Char(finding.letter))},
                       {QStringLiteral("type"), QLatin1String(typeWord(finding.type))},
                       {QStringLiteral("verdict"), QLatin1String(verdictWord(finding.verdict))},
                       {QStringLiteral("reason"), verdictText(finding)}};
    if (!finding.place.isEmpty())
        object.insert(QStringLiteral("place"), finding.place);
    if (finding.type == DriveType::Removable)
        addRemovable(finding, &object);
    return object;
}

void printFinding(Reporter &reporter, const DriveFinding &finding)
{
    reporter.event("detected", driveObject(finding));
    for (const QString &line : driveLines(finding))
        reporter.answer(line);
}

// A memory stick with an early letter hides the reader.
void warnOfHiddenReader(Reporter &reporter, const QVector<DriveFinding> &findings)
{
    const auto taken = std::find_if(findings.begin(), findings.end(), [](const DriveFinding &row) {
        return row.verdict == DriveVerdict::Taken;
    });
    const auto hidden = std::find_if(findings.begin(), findings.end(), [](const DriveFinding &row) {
        return row.verdict == DriveVerdict::AlsoPasses && row.hasIdentity();
    });
    if (taken == findings.end() || taken->hasIdentity() || hidden == findings.end())
        return;
    reporter.problem(QStringLiteral("%1: is taken and shows no identity, %2: has one. If %2: is "
                                    "the reader, use --drive %2\nor take %1: out.")
                         .arg(QLatin1Char(taken->letter))
                         .arg(QLatin1Char(hidden->letter)));
}

void explainScan(Reporter &reporter)
{
    QStringList notes = scanNotes();
    if (!qEnvironmentVariableIsEmpty(kVirtualReaderVariable))
        notes = QStringList{QStringLiteral("%1 is set: only the virtual reader is looked at.")
                                .arg(QLatin1String(kVirtualReaderVariable))};
    for (const QString &note : notes)
        reporter.log(note);
}

} // namespace

ExitCode runDrives(Reporter &reporter)
{
    explainScan(reporter);
    const QVector<DriveFinding> findings = examineDrives();
    for (const DriveFinding &finding : findings)
        printFinding(reporter, finding);
    warnOfHiddenReader(reporter, findings);
    if (std::any_of(findings.begin(), findings.end(),
                    [](const DriveFinding &row) { return row.verdict == DriveVerdict::Taken; }))
        return ExitCode::Done;
    const QString what = findings.isEmpty() ? QStringLiteral("No drive that could be a reader is "
                                                             "seen.")
                                            : QStringLiteral("No reader was found.");
    reporter.problem(what + QLatin1Char('\n') + noReaderAdvice().join(QLatin1Char('\n')));
    return ExitCode::NoReader;
}
