// The command info: the cartridge report as the command's answer, or as one event.
#include "cli/commands.h"

#include "cart/setting_tables.h"
#include "cli/cli_listener.h"
#include "cli/interrupt.h"
#include "cli/telling.h"
#include "trust/cartridge_values.h"
#include "trust/checked_read.h"
#include "worker/shown_text.h"

#include <QJsonObject>

namespace
{

// What is said about one check of the header.
struct HeaderCheck {
    const char *key;   // in JSON
    const char *label; // in text
    QString result;
};

QString rightOrWrong(bool isRight)
{
    return isRight ? QStringLiteral("right") : QStringLiteral("wrong");
}

const std::uint8_t *bytesOf(const QByteArray &bytes)
{
    return reinterpret_cast<const std::uint8_t *>(bytes.constData());
}

// Dumps the ROM to sum it up.
QString globalChecksum(const CartridgeReport &report, Reporter &reporter, ExitCode *code)
{
    CartridgeJob job;
    QByteArray rom;
    if (makeJob(CartridgeTask::Dump, valuesFound(report), &job) == MissingValue::None) {
        CliListener listener(reporter, ToldLines::OfFailures);
        const CheckedRead read = readOnce(job, Phase::Read, listener);
        *code = tellTrouble(read.outcome, reporter);
        rom = read.bytes;
    }
    if (rom.isEmpty())
        return QStringLiteral("not checked, the ROM cannot be read");
    return rightOrWrong(
        gbGlobalChecksumIsRight(bytesOf(rom), static_cast<std::uint32_t>(rom.size())));
}

QVector<HeaderCheck> checkHeader(const CartridgeReport &report, bool isQuick, Reporter &reporter,
                                 ExitCode *code)
{
    const std::uint8_t *header = bytesOf(report.header);
    QVector<HeaderCheck> checks;
    if (report.outcome == ReportOutcome::GbCartridge) {
        checks << HeaderCheck{"headerChecksum",
                              "Header checksum: ", rightOrWrong(gbHeaderChecksumIsRight(header))};
        checks << HeaderCheck{"globalChecksum", "Global checksum: ",
                              isQuick ? QStringLiteral("not checked")
                                      : globalChecksum(report, reporter, code)};
    } else if (report.outcome == ReportOutcome::GbaCartridge || isUnknownGbaGame(report)) {
        checks << HeaderCheck{"complementCheck",
                              "Complement check: ", rightOrWrong(gbaComplementIsRight(header))};
    }
    return checks;
}

// The report follows the window, which has RAM size codes 4 and 5 the other way round.
void tellTrueSaveSize(const CartridgeReport &report, Reporter &reporter)
{
    const std::optional<int> size = valuesFound(report).ramSize;
    if (report.outcome == ReportOutcome::GbCartridge && size && *size != report.gb.ramSize)
        reporter.answer(QStringLiteral("Save size used: %1KB").arg(*size / 1024));
}

void tellChecks(const CartridgeReport &report, const QVector<HeaderCheck> &checks,
                Reporter &reporter)
{
    if (isUnknownGbaGame(report)) {
        reporter.answer(QString());
        reporter.answer(QStringLiteral("It is a GBA cartridge with an unknown game."));
        reporter.answer(QStringLiteral("Game code: ") +
                        shownValue(gbaHeaderCode(bytesOf(report.header))));
        reporter.answer(QStringLiteral("Header title: ") +
                        shownValue(gbaHeaderTitle(bytesOf(report.header))));
    }
    tellTrueSaveSize(report, reporter);
    for (const HeaderCheck &check : checks)
        reporter.answer(QLatin1String(check.label) + check.result);
}

void addGb(const CartridgeReport &report, QJsonObject *object)
{
    const GbHeaderInfo &gb = report.gb;
    const auto mapper = static_cast<std::size_t>(rowWithValue(kMappers, gb.mbcType));
    object->insert("system", "gb");
    object->insert("title", gb.title);
    object->insert("type", gb.typeName);
    object->insert("mapper", QString::fromLatin1(kMappers[mapper].label).toLower());
    object->insert("romSize", gb.romSize);
    object->insert("ramSize", valuesFound(report).ramSize.value_or(0));
}

void addGbaHeader(const QByteArray &header, QJsonObject *object)
{
    object->insert("system", "gba");
    object->insert("headerTitle", gbaHeaderTitle(bytesOf(header)));
    object->insert("headerCode", gbaHeaderCode(bytesOf(header)));
}

void addGbaGame(const GbaHeaderInfo &gba, QJsonObject *object)
{
    const auto type = static_cast<std::size_t>(rowWithValue(kGbaSaveTypes, gba.saveType));
    object->insert("title", gba.title);
    object->insert("year", gba.year);
    object->insert("publisher", gba.publisher);
    object->insert("codes", gba.codes);
    object->insert("romSize", gba.romSize);
    object->insert("ramSize", gba.saveSize);
    // Without a known save the table says nothing about its type.
    if (gba.saveSize != 0)
        object->insert("saveType", QString::fromLatin1(kGbaSaveTypes[type].label).toLower());
}

QJsonObject detectedObject(const CartridgeReport &report, const QVector<HeaderCheck> &checks)
{
    QJsonObject object{{"what", "cartridge"}};
    if (report.outcome != ReportOutcome::NoReader)
        object.insert("reader",
                      QJsonObject{{"label", report.label}, {"firmware", report.firmware}});
    if (report.outcome == ReportOutcome::GbCartridge)
        addGb(report, &object);
    else if (!checks.isEmpty())
        addGbaHeader(report.header, &object);
    else
        object.insert("error", report.error);
    if (report.outcome == ReportOutcome::GbaCartridge)
        addGbaGame(report.gba, &object);
    for (const HeaderCheck &check : checks)
        object.insert(QLatin1String(check.key), check.result);
    return object;
}

} // namespace

ExitCode runInfo(const CliOptions &options, Reporter &reporter)
{
    const CartridgeReport report =
        detectCartridge([&](const QString &line) { reporter.answer(line); });
    ExitCode romCode = ExitCode::Done;
    const QVector<HeaderCheck> checks = checkHeader(report, options.isQuick, reporter, &romCode);
    reporter.event("detected", detectedObject(report, checks));
    const ExitCode code = readerFault(report);
    if (code != ExitCode::Done) {
        reporter.problem(readerProblem(report));
        return code;
    }
    if (checks.isEmpty()) {
        return tellProblem(ExitCode::NotRecognised,
                           QStringLiteral("No cartridge was recognised. Push it in again, clean "
                                          "its contacts."),
                           CartridgeState::LookedAt, reporter);
    }
    tellChecks(report, checks, reporter);
    return wasInterrupted() ? ExitCode::Cancelled : romCode;
}
