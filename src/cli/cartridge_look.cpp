#include "cli/cartridge_look.h"

#include "cart/setting_tables.h"
#include "cli/command_table.h"
#include "cli/telling.h"
#include "trust/words.h"

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

bool hasNoSave(CartridgeTask task, const CartridgeLook &look)
{
    const bool wantsSave = task == CartridgeTask::ReadSave || task == CartridgeTask::WriteSave;
    return wantsSave && !look.values.ramSize && look.report.outcome == ReportOutcome::GbCartridge;
}

// The option that contradicts, and the way out.
QString contradictionLine(Contradiction contradiction)
{
    const OptionRow &option = contradiction == Contradiction::Mapper     ? kMapperOption
                              : contradiction == Contradiction::SaveType ? kSaveTypeOption
                                                                         : kRamSizeOption;
    return contradictionText(contradiction) +
           QStringLiteral(" Leave --%1 out, or give --%2 if you know better.")
               .arg(QLatin1String(option.name), QLatin1String(kIgnoreContradictionOption.name));
}

// What the user can do about a doubt.
QString doubtLine(Doubt doubt)
{
    switch (doubt) {
    case Doubt::Tama5AsMbc5:
        return doubtText(doubt) + QStringLiteral(": give --mapper tama5.");
    case Doubt::Mbc6AsMbc5:
        return doubtText(doubt) + QStringLiteral(": do not trust the result.");
    case Doubt::UnknownRomSize:
        return doubtText(doubt) + QStringLiteral(": give --rom-size for all of it.");
    }
    return QString();
}

CartridgeLook refuse(const CartridgeLook &look, const QString &problem, Reporter &reporter)
{
    CartridgeLook refused = look;
    refused.code = tellProblem(ExitCode::Refused, problem, CartridgeState::LookedAt, reporter);
    return refused;
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

// Whether the user contradicts the cartridge in what matters for the task.
ExitCode refuseContradiction(const CliOptions &options, CartridgeTask task,
                             const CartridgeLook &look, Reporter &reporter)
{
    const Contradiction contradiction = contradictionOf(task, options.values, look.named);
    if (contradiction == Contradiction::None || options.ignoresContradiction)
        return ExitCode::Done;
    return tellProblem(ExitCode::Refused, contradictionLine(contradiction),
                       CartridgeState::LookedAt, reporter);
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

CartridgeLook lookAtCartridge(const CliOptions &options, CartridgeTask task, Reporter &reporter)
{
    CartridgeLook look;
    if (options.looks) {
        look.report = detectCartridge([&](const QString &line) { reporter.log(line); });
        look.code = readerFault(look.report);
        if (look.code != ExitCode::Done) {
            reporter.problem(readerProblem(look.report) + QLatin1Char('\n') +
                             stateText(look.code == ExitCode::NoReader ? CartridgeState::Untouched
                                                                       : CartridgeState::LookedAt));
            return look;
        }
        look.found = valuesFound(look.report);
        look.named = valuesNamed(look.report);
        look.title = titleOf(look.report);
    }
    if (contradicts(options.values, look.found))
        return refuse(look,
                      QStringLiteral("The cartridge is of another system than --system says; leave "
                                     "--system out."),
                      reporter);
    const Danger danger = options.looks ? dangerOf(look.report, task) : Danger::None;
    if (danger != Danger::None)
        return refuse(look, dangerText(danger), reporter);
    look.values = mergeValues(options.values, look.found);
    tellValues(look, options.values, reporter);
    if (options.looks)
        for (const Doubt doubt : doubtsAbout(look.report, task, look.values))
            reporter.log(doubtLine(doubt));
    return look;
}

ExitCode makeLookedAtJob(const CliOptions &options, CartridgeTask task, const CartridgeLook &look,
                         Reporter &reporter, CartridgeJob *job)
{
    const MissingValue missing = makeJob(task, look.values, job);
    if (missing == MissingValue::None)
        return refuseContradiction(options, task, look, reporter);
    const CartridgeState state =
        options.looks ? CartridgeState::LookedAt : CartridgeState::Untouched;
    if (hasNoSave(task, look))
        return tellProblem(
            ExitCode::Refused,
            QStringLiteral("The header says that this cartridge has no save memory. If that is "
                           "wrong, give --ram-size."),
            state, reporter);
    // A pair that is there but cannot be is the user's.
    const bool isNotTold = options.looks && missing != MissingValue::SavePair;
    return tellProblem(isNotTold ? ExitCode::NotRecognised : ExitCode::Usage,
                       (options.looks ? silenceOf(look) : QString()) +
                           missingText(missing, look.values) +
                           QStringLiteral(" Try \"gbdriver-cli %1 --help\".")
                               .arg(QLatin1String(commandName(options.request))),
                       state, reporter);
}
