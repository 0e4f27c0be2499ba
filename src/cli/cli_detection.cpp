#include "cli/cli_detection.h"

#include "cart/cartridge_types.h"
#include "cart/setting_tables.h"
#include "device/device_link.h"

namespace
{

constexpr int kTypeOffset = 0x147;
constexpr int kRomSizeOffset = 0x148;
constexpr int kRamSizeOffset = 0x149;
constexpr char kMbc6Type = 0x20;
constexpr char kTama5Type = '\xFD';
constexpr int kSizeOfUnknownRom = 32768;
constexpr char kRamSize128K = 4; // the report takes it for 64 KiB

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

bool isForMbc5(const CartridgeValues &values)
{
    return values.mapper == kMappers[kMapperMbc5Row].value;
}

struct DoubtRow {
    bool (*applies)(const QByteArray &header, MovedData moves, const CartridgeValues &used);
    const char *text;
};

constexpr DoubtRow kDoubts[] = {
    {[](const QByteArray &header, MovedData, const CartridgeValues &used) {
         return header[kTypeOffset] == kTama5Type && isForMbc5(used);
     },
     "The header names the mapper TAMA5, which shows one bank again and again to a job for MBC5: "
     "give --mapper tama5."},
    {[](const QByteArray &header, MovedData, const CartridgeValues &used) {
         return header[kTypeOffset] == kMbc6Type && isForMbc5(used);
     },
     "The header names the mapper MBC6, which no script can read: do not trust the result."},
    {[](const QByteArray &header, MovedData moves, const CartridgeValues &used) {
         const auto code = static_cast<std::uint8_t>(header[kRomSizeOffset]);
         return moves == MovedData::Rom && code != 0 && used.romSize == kSizeOfUnknownRom &&
                gbRomSizeBytes(code) == kSizeOfUnknownRom;
     },
     "The header has no known ROM size, so only 32 KiB are read: give --rom-size for all of it."},
    {[](const QByteArray &header, MovedData moves, const CartridgeValues &used) {
         return moves == MovedData::Save && header[kRamSizeOffset] == kRamSize128K &&
                used.ramSize == 65536;
     },
     "The header's RAM size code is taken for 64 KiB, but most cartridges with it have 128: give "
     "--ram-size 128K for all of the save."},
};

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

QString dangerOf(const CartridgeReport &report, const CliCommand &command)
{
    const bool isTama5 =
        report.outcome == ReportOutcome::GbCartridge && report.header[kTypeOffset] == kTama5Type;
    if (!isTama5 || command.moves != MovedData::Save)
        return QString();
    return QStringLiteral(
        "The save of a TAMA5 can not be read or written: it lies behind registers, "
        "and the bytes of another save would destroy it.");
}

QStringList doubtsAbout(const CartridgeReport &report, const CliCommand &command,
                        const CartridgeValues &used)
{
    QStringList doubts;
    if (report.outcome != ReportOutcome::GbCartridge)
        return doubts;
    for (const DoubtRow &row : kDoubts) {
        if (row.applies(report.header, command.moves, used))
            doubts << QString::fromLatin1(row.text);
    }
    return doubts;
}
