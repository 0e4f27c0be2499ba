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
constexpr char kMbc7Type = 0x22;
constexpr char kTama5Type = '\xFD';
constexpr int kSizeOfUnknownRom = 32768;
constexpr int kMbc2Row = 2; // of kMappers
constexpr int kTama5Row = 6;
constexpr int kMbc2Bytes = 512;

std::optional<int> unlessZero(int value)
{
    return value == 0 ? std::optional<int>() : value;
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
};

// Cartridges whose save no job can move, whatever the header says of its size.
struct DangerRow {
    char type;
    const char *text;
};

constexpr DangerRow kDangers[] = {
    {kMbc6Type, "The save of an MBC6 can not be read or written: no script knows this mapper."},
    {kMbc7Type, "The save of an MBC7 can not be read or written: it lies in a serial EEPROM that "
                "moves one bit at a time, and the reader has no command for that."},
    {kTama5Type,
     "The save of a TAMA5 can not be read or written: it lies behind registers, and the "
     "bytes of another save would destroy it."},
};

std::int32_t mapperOf(const CartridgeReport &report)
{
    return report.header[kTypeOffset] == kTama5Type ? kMappers[kTama5Row].value : report.gb.mbcType;
}

std::int32_t saveSizeOf(const CartridgeReport &report)
{
    // An MBC2 has its memory built in, whatever the code says.
    if (report.gb.mbcType == kMappers[kMbc2Row].value)
        return kMbc2Bytes;
    switch (report.header[kRamSizeOffset]) {
    case 4:
        return 128 * 1024;
    case 5:
        return 64 * 1024;
    default:
        return report.gb.ramSize;
    }
}

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
    clearLastDriveError();
    CartridgeReport report = makeCartridgeReport(output);
    // A drive that failed while nothing was recognised says nothing about the cartridge.
    if (report.outcome == ReportOutcome::Unknown && !isUnknownGbaGame(report) &&
        !lastDriveError().empty())
        report.outcome = ReportOutcome::ShortRead;
    return report;
}

CartridgeValues valuesFound(const CartridgeReport &report)
{
    CartridgeValues values;
    if (report.outcome == ReportOutcome::GbCartridge) {
        values.system = kSystemGb;
        values.mapper = mapperOf(report);
        values.romSize = report.gb.romSize;
        values.ramSize = unlessZero(saveSizeOf(report));
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

QString dangerOf(const CartridgeReport &report, const CliCommand &command)
{
    if (report.outcome != ReportOutcome::GbCartridge || command.moves != MovedData::Save)
        return QString();
    for (const DangerRow &row : kDangers) {
        if (report.header[kTypeOffset] == row.type)
            return QString::fromLatin1(row.text);
    }
    return QString();
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
