#include "trust/cartridge_values.h"

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
    Doubt doubt;
    bool (*applies)(const QByteArray &header, CartridgeTask task, const CartridgeValues &used);
};

constexpr DoubtRow kDoubts[] = {
    {Doubt::Tama5AsMbc5,
     [](const QByteArray &header, CartridgeTask, const CartridgeValues &used) {
         return header[kTypeOffset] == kTama5Type && isForMbc5(used);
     }},
    {Doubt::Mbc6AsMbc5,
     [](const QByteArray &header, CartridgeTask, const CartridgeValues &used) {
         return header[kTypeOffset] == kMbc6Type && isForMbc5(used);
     }},
    {Doubt::UnknownRomSize,
     [](const QByteArray &header, CartridgeTask task, const CartridgeValues &used) {
         const auto code = static_cast<std::uint8_t>(header[kRomSizeOffset]);
         return task == CartridgeTask::Dump && code != 0 && used.romSize == kSizeOfUnknownRom &&
                gbRomSizeBytes(code) == kSizeOfUnknownRom;
     }},
};

// Cartridges whose save no job can move, whatever the header says of its size.
struct DangerRow {
    char type;
    Danger danger;
};

constexpr DangerRow kDangers[] = {
    {kMbc6Type, Danger::Mbc6Save}, {kMbc7Type, Danger::Mbc7Save}, {kTama5Type, Danger::Tama5Save}};

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
    output.line = [&](const QString &text) { line(text.trimmed().isEmpty() ? QString() : text); };
    output.rule = [] {};
    output.settings = [](const DetectedSettings &) {};
    output.hasAdviceForUnknownGames = false;
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

CartridgeValues valuesNamed(const CartridgeReport &report)
{
    CartridgeValues values = valuesFound(report);
    const bool isGb = report.outcome == ReportOutcome::GbCartridge;
    if (isGb && cartridgeType(static_cast<std::uint8_t>(report.header[kTypeOffset])) == nullptr)
        values.mapper.reset();
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

bool isRecognised(const CartridgeReport &report)
{
    return report.outcome == ReportOutcome::GbCartridge ||
           report.outcome == ReportOutcome::GbaCartridge || isUnknownGbaGame(report);
}

JobEnd readerFaultOf(const CartridgeReport &report)
{
    switch (report.outcome) {
    case ReportOutcome::NoReader:
        return JobEnd::NoReader;
    case ReportOutcome::NoMode:
        return report.modeFault;
    case ReportOutcome::ShortRead:
        return JobEnd::NoMode;
    case ReportOutcome::GbCartridge:
    case ReportOutcome::GbaCartridge:
    case ReportOutcome::Unknown:
        break;
    }
    return JobEnd::Done;
}

Danger dangerOf(const CartridgeReport &report, CartridgeTask task)
{
    if (report.outcome != ReportOutcome::GbCartridge ||
        (task != CartridgeTask::ReadSave && task != CartridgeTask::WriteSave))
        return Danger::None;
    for (const DangerRow &row : kDangers) {
        if (report.header[kTypeOffset] == row.type)
            return row.danger;
    }
    return Danger::None;
}

QVector<Doubt> doubtsAbout(const CartridgeReport &report, CartridgeTask task,
                           const CartridgeValues &used)
{
    QVector<Doubt> doubts;
    if (report.outcome != ReportOutcome::GbCartridge)
        return doubts;
    for (const DoubtRow &row : kDoubts) {
        if (row.applies(report.header, task, used))
            doubts << row.doubt;
    }
    return doubts;
}
