#include "cli/cartridge_look.h"

#include "cart/setting_tables.h"
#include "cli/cli_command.h"
#include "cli/cli_detection.h"
#include "device/device_link.h"

#include <array>

namespace
{

// One value of the table that is told.
struct ValueRow {
    const char *name; // to a person
    const char *key;  // in JSON
    std::optional<int> CartridgeValues::*value;
    const char *option;
    QString (*text)(int);
};

QString sizeText(int bytes)
{
    return QStringLiteral("%1 bytes").arg(bytes);
}

QString systemText(int system)
{
    return system == kSystemGba ? QStringLiteral("gba") : QStringLiteral("gb");
}

const std::array<ValueRow, 5> kRows = {{
    {"system", "system", &CartridgeValues::system, "--system", systemText},
    {"mapper", "mapper", &CartridgeValues::mapper, "--mapper",
     [](int value) { return labelOf(kMappers, value); }},
    {"ROM", "romSize", &CartridgeValues::romSize, "--rom-size", sizeText},
    {"save type", "saveType", &CartridgeValues::saveType, "--save-type",
     [](int value) { return labelOf(kGbaSaveTypes, value); }},
    {"save", "ramSize", &CartridgeValues::ramSize, "--ram-size", sizeText},
}};

bool isSize(const ValueRow &row)
{
    return row.text == sizeText;
}

// Who told a value. A GBA header names the game only; its sizes come from the game table.
const char *sourceOf(const ValueRow &row, const CartridgeValues &said, const CartridgeLook &look)
{
    if (said.*row.value)
        return "user";
    const bool isGba = look.values.system == kSystemGba;
    return isGba && row.value != &CartridgeValues::system ? "game table" : "header";
}

// "mbc5 (user: --mapper; header: mbc3)"
QString rowText(const ValueRow &row, const CartridgeValues &said, const CartridgeLook &look)
{
    const int value = *(look.values.*row.value);
    QString text = QStringLiteral("  %1 %2 %3")
                       .arg(QLatin1String(row.name), -10)
                       .arg(row.text(value), -16)
                       .arg(QLatin1String(sourceOf(row, said, look)));
    if (!(said.*row.value))
        return text;
    text += QStringLiteral(": ") + QLatin1String(row.option);
    if (look.found.*row.value && look.found.*row.value != value)
        text += QStringLiteral(" (the cartridge says %1)").arg(row.text(*(look.found.*row.value)));
    return text;
}

bool contradicts(const CartridgeValues &said, const CartridgeValues &found)
{
    return said.system && found.system && said.system != found.system;
}

bool hasNoSave(const CliOptions &options, const CartridgeLook &look)
{
    return options.command->moves == MovedData::Save && !look.values.ramSize &&
           look.report.outcome == ReportOutcome::GbCartridge;
}

// Why the cartridge did not tell what is missing; empty if it was not looked at, or told something.
QString silenceOf(const CartridgeLook &look)
{
    if (isUnknownGbaGame(look.report))
        return QStringLiteral("No table knows this GBA game, and its header tells no more.\n");
    return look.report.outcome == ReportOutcome::Unknown
               ? QStringLiteral("No cartridge was recognised: push it in again, clean its "
                                "contacts, or say what it is.\n")
               : QString();
}

} // namespace

void tellValues(const CartridgeLook &look, const CartridgeValues &said, Reporter &reporter)
{
    QJsonObject object{{QStringLiteral("what"), QStringLiteral("cartridge")}};
    QJsonObject from;
    QStringList lines;
    for (const ValueRow &row : kRows) {
        if (!(look.values.*row.value))
            continue;
        const int value = *(look.values.*row.value);
        lines << rowText(row, said, look);
        object.insert(QLatin1String(row.key), isSize(row) ? QJsonValue(value) : row.text(value));
        from.insert(QLatin1String(row.key), QLatin1String(sourceOf(row, said, look)));
    }
    if (lines.isEmpty())
        return;
    object.insert(QStringLiteral("from"), from);
    if (!look.title.isEmpty())
        object.insert(QStringLiteral("title"), look.title);
    if (!look.report.firmware.isEmpty())
        object.insert(QStringLiteral("reader"), QJsonObject{{"label", look.report.label},
                                                            {"firmware", look.report.firmware}});
    reporter.event("detected", object);
    if (reporter.isJson())
        return;
    reporter.log(QStringLiteral("Using:"));
    for (const QString &line : lines)
        reporter.log(line);
}

QString titleOf(const CartridgeReport &report)
{
    switch (report.outcome) {
    case ReportOutcome::GbCartridge:
        return report.gb.title;
    case ReportOutcome::GbaCartridge:
        return report.gba.title;
    default:
        return isUnknownGbaGame(report)
                   ? gbaHeaderTitle(reinterpret_cast<const std::uint8_t *>(report.header.data()))
                   : QString();
    }
}

ExitCode readerFault(const CartridgeReport &report)
{
    switch (report.outcome) {
    case ReportOutcome::NoReader:
        return ExitCode::NoReader;
    case ReportOutcome::NoMode:
    case ReportOutcome::ShortRead:
        return ExitCode::NoAnswer;
    default:
        return ExitCode::Done;
    }
}

QString readerAdvice(ExitCode code)
{
    return code == ExitCode::NoReader
               ? QStringLiteral("No reader was found. Plug it in, let the system mount its drive "
                                "and look at \"gbdriver-cli drives\".")
               : QStringLiteral("The reader does not answer. Unplug it, plug it in again and see "
                                "whether its drive can be read and written.");
}

QString readerProblem(ExitCode code)
{
    // A scan asks drives that are no readers, too; what they said does not matter.
    const QString driveError = QString::fromLocal8Bit(lastDriveError().c_str());
    return code == ExitCode::NoReader || driveError.isEmpty()
               ? readerAdvice(code)
               : readerAdvice(code) + QLatin1Char('\n') + driveError;
}

CartridgeLook lookAtCartridge(const CliOptions &options, Reporter &reporter)
{
    CartridgeLook look;
    if (options.looks) {
        look.report = detectCartridge([&](const QString &line) { reporter.log(line); });
        look.code = readerFault(look.report);
        if (look.code != ExitCode::Done) {
            reporter.problem(readerProblem(look.code) +
                             QStringLiteral("\nThe cartridge was not changed."));
            return look;
        }
        look.found = valuesFound(look.report);
        look.title = titleOf(look.report);
    }
    if (contradicts(options.values, look.found)) {
        reporter.problem(QStringLiteral("The cartridge is of another system than --system says. It "
                                        "was only looked at; leave --system out."));
        look.code = ExitCode::Refused;
        return look;
    }
    const QString danger = options.looks ? dangerOf(look.report, *options.command) : QString();
    if (!danger.isEmpty()) {
        reporter.problem(danger + QStringLiteral(" The cartridge was only looked at."));
        look.code = ExitCode::Refused;
        return look;
    }
    look.values = mergeValues(options.values, look.found);
    tellValues(look, options.values, reporter);
    if (options.looks)
        for (const QString &doubt : doubtsAbout(look.report, *options.command, look.values))
            reporter.log(doubt);
    return look;
}

ExitCode completeLookedAtJob(const CliOptions &options, const CartridgeLook &look,
                             const QString &path, Reporter &reporter, CliJob *job)
{
    QString problem;
    if (completeJob(*options.command, path, look.values, job, &problem))
        return ExitCode::Done;
    const QString touched = options.looks ? QStringLiteral("The cartridge was only looked at.")
                                          : QStringLiteral("The cartridge was not touched.");
    if (hasNoSave(options, look)) {
        reporter.problem(
            QStringLiteral("The header says that this cartridge has no save memory. If that is "
                           "wrong, give --ram-size. ") +
            touched);
        return ExitCode::Refused;
    }
    reporter.problem((options.looks ? silenceOf(look) : QString()) + problem +
                     QStringLiteral(" Try \"gbdriver-cli %1 --help\". ")
                         .arg(QLatin1String(options.command->name)) +
                     touched);
    // What is there but can not be is the user's.
    const bool isMissing = problem.startsWith(QStringLiteral("Missing"));
    return options.looks && isMissing ? ExitCode::NotRecognised : ExitCode::Usage;
}
