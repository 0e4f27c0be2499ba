#include "cli/cli_detection.h"

#include "cart/setting_tables.h"
#include "device/device_link.h"

namespace
{

std::optional<int> unlessZero(int value)
{
    return value == 0 ? std::optional<int>() : value;
}

// Label of the row that keeps `value`, as the user types it.
template <typename Table> QString labelOf(const Table &table, int value)
{
    const int row = rowWithValue(table, value);
    return row == kNoRow
               ? QString::number(value)
               : QString::fromLatin1(table[static_cast<std::size_t>(row)].label).toLower();
}

constexpr int kTypeOffset = 0x147;
constexpr int kRamSizeOffset = 0x149;
constexpr char kMbc6Type = 0x20;
constexpr char kTama5Type = '\xFD';
constexpr char kRamSize128K = 4; // the report takes it for 64 KiB

std::optional<int> orElse(const std::optional<int> &said, const std::optional<int> &found)
{
    return said ? said : found;
}

} // namespace

CartridgeReport detectCartridge(const std::function<void(const QString &)> &line)
{
    const ReaderSession session;
    ReportOutput output;
    output.line = [&](const QString &text) {
        if (text != QLatin1String("<hr><br>"))
            line(text.trimmed().isEmpty() ? QString() : text);
    };
    output.settings = [](const DetectedSettings &) {};
    return makeCartridgeReport(output);
}

CartridgeValues valuesFound(const CartridgeReport &report)
{
    CartridgeValues values;
    if (report.outcome == ReportOutcome::GbCartridge) {
        values.system = kSystemGb;
        values.mapper = report.gb.mbcType;
        values.romSize = report.gb.romSize;
        values.ramSize = unlessZero(report.gb.ramSize);
    } else if (report.outcome == ReportOutcome::GbaCartridge) {
        values.system = kSystemGba;
        values.romSize = report.gba.romSize;
        values.ramSize = unlessZero(report.gba.saveSize);
        if (values.ramSize)
            values.saveType = report.gba.saveType;
    } else if (isUnknownGbaGame(report)) {
        values.system = kSystemGba;
    }
    return values;
}

CartridgeValues mergeValues(const CartridgeValues &said, const CartridgeValues &found)
{
    if (said.system && said.system != found.system)
        return said;
    CartridgeValues values = said;
    values.system = found.system;
    values.mapper = orElse(said.mapper, found.mapper);
    values.romSize = orElse(said.romSize, found.romSize);
    values.ramSize = orElse(said.ramSize, found.ramSize);
    values.saveType = orElse(said.saveType, found.saveType);
    return values;
}

QString describeValues(const CartridgeValues &values)
{
    QStringList parts;
    if (values.system)
        parts << QStringLiteral("system ") +
                     (*values.system == kSystemGba ? QStringLiteral("gba") : QStringLiteral("gb"));
    if (values.mapper)
        parts << QStringLiteral("mapper ") + labelOf(kMappers, *values.mapper);
    if (values.romSize)
        parts << QStringLiteral("ROM %1 bytes").arg(*values.romSize);
    if (values.saveType)
        parts << QStringLiteral("save type ") + labelOf(kGbaSaveTypes, *values.saveType);
    if (values.ramSize)
        parts << QStringLiteral("save %1 bytes").arg(*values.ramSize);
    return parts.join(QStringLiteral(", "));
}

QStringList doubtsAbout(const CartridgeReport &report, const CliCommand &command,
                        const CartridgeValues &used)
{
    QStringList doubts;
    if (report.outcome != ReportOutcome::GbCartridge)
        return doubts;
    const char type = report.header[kTypeOffset];
    const bool isMbc5 = used.mapper == kMappers[kMapperMbc5Row].value;
    if (type == kTama5Type && isMbc5)
        doubts << QStringLiteral(
            "The header names the mapper TAMA5, which shows one bank again and "
            "again to a job for MBC5: give --mapper tama5.");
    if (type == kMbc6Type && isMbc5)
        doubts << QStringLiteral("The header names the mapper MBC6, which no script can read: do "
                                 "not trust the result.");
    if (command.moves == MovedData::Save && report.header[kRamSizeOffset] == kRamSize128K &&
        used.ramSize == 65536)
        doubts << QStringLiteral(
            "Most cartridges whose header says so have 128 KiB of save memory, "
            "not 64: give --ram-size 128K for all of it.");
    return doubts;
}
