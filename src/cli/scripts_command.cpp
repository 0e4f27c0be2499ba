// The command scripts: the mapper scripts, and what they can do.
#include "cli/commands.h"

#include "trial/script_finding.h"
#include "trust/file_sha1.h"

#include <QDir>
#include <QJsonArray>

namespace
{

QLatin1String roleWord(ScriptRole role)
{
    switch (role) {
    case ScriptRole::Mapper:
        return QLatin1String("mapper");
    case ScriptRole::Helper:
        return QLatin1String("helper");
    case ScriptRole::Other:
        return QLatin1String("other");
    }
    return QLatin1String();
}

QLatin1String stateWord(ScriptState state)
{
    switch (state) {
    case ScriptState::Sound:
        return QLatin1String("sound");
    case ScriptState::Missing:
        return QLatin1String("missing");
    case ScriptState::NotCompiled:
        return QLatin1String("not-compiled");
    case ScriptState::Threw:
        return QLatin1String("error");
    }
    return QLatin1String();
}

// `sha1`: of the file; empty if it cannot be read.
QJsonObject scriptObject(const ScriptFinding &finding, const QString &sha1)
{
    QJsonObject object{
        {QStringLiteral("what"), QStringLiteral("script")},
        {QStringLiteral("file"), finding.file},
        {QStringLiteral("role"), roleWord(finding.role)},
        {QStringLiteral("state"), stateWord(finding.state)},
        {QStringLiteral("operations"), QJsonArray::fromStringList(finding.operations)}};
    const struct {
        QString key;
        QString value;
    } texts[] = {{QStringLiteral("usedBy"), finding.usedBy},
                 {QStringLiteral("sha1"), sha1},
                 {QStringLiteral("problem"), finding.problem}};
    for (const auto &text : texts) {
        if (!text.value.isEmpty())
            object.insert(text.key, text.value);
    }
    return object;
}

void printFinding(Reporter &reporter, const ScriptFinding &finding, const QString &sha1)
{
    reporter.event("detected", scriptObject(finding, sha1));
    reporter.answer(finding.file + QStringLiteral(": ") + purposeText(finding));
    const QStringList lines = {stateText(finding),
                               sha1.isEmpty() ? QString() : QStringLiteral("SHA-1 ") + sha1};
    for (const QString &line : lines) {
        if (!line.isEmpty())
            reporter.answer(QStringLiteral("   ") + line);
    }
}

} // namespace

ExitCode runScripts(Reporter &reporter, const QString &folder)
{
    QStringList faults;
    for (const ScriptFinding &finding : examineScripts(folder)) {
        printFinding(reporter, finding, fileSha1(QDir(folder).filePath(finding.file)));
        if (finding.isFault())
            faults << finding.file;
    }
    if (faults.isEmpty())
        return ExitCode::Done;
    reporter.problem(QStringLiteral("Cartridges that need %1 cannot be used.\nThe scripts belong "
                                    "into \"%2\"; install the program anew, or mend them.")
                         .arg(faults.join(QStringLiteral(", ")), QDir::toNativeSeparators(folder)));
    return ExitCode::FileError;
}
