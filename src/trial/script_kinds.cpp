#include "trial/script_kinds.h"

#include "script/job.h"

namespace
{

constexpr std::uint32_t kKibi = 1024;
constexpr std::uint32_t kRomBank = 16 * kKibi;
constexpr std::uint32_t kRamBank = 8 * kKibi;
constexpr std::uint32_t kGroupBanks = 32;
constexpr std::uint32_t kGbaPiece = 1024 * kKibi;
constexpr std::uint32_t kSavePiece = 4 * kKibi;

// Sizes that exercise more than one bank and still take no time.
constexpr ScriptKind kKinds[] = {
    {"gb_mbc0.nut", false, 0x09, 32 * kKibi, 8 * kKibi, false, '\xFF'},
    {"gb_mbc1.nut", false, 0x03, 512 * kKibi, 32 * kKibi, true, '\xFF'},
    {"gb_mbc2.nut", false, 0x06, 256 * kKibi, 512, false, 0x0F},
    {"gb_mbc3.nut", false, 0x13, 512 * kKibi, 32 * kKibi, false, '\xFF'},
    {"gb_mbc5.nut", false, 0x1B, 512 * kKibi, 32 * kKibi, false, '\xFF'},
    {"gb_mbc7.nut", false, 0x22, 512 * kKibi, 0, false, '\xFF'},
    {"gb_tama5.nut", false, 0xFF, 512 * kKibi, 32 * kKibi, false, '\xFF'},
    {"gba.nut", true, 0, 4096 * kKibi, 32 * kKibi, false, '\xFF'},
};

DeviceOperations leastForGb(int operate, const ScriptKind &kind)
{
    const qint64 banks = kind.romSize / kRomBank;
    const qint64 ramBanks = (kind.ramSize + kRamBank - 1) / kRamBank;
    const bool hasMapper = kind.romSize > 2 * kRomBank;
    if (operate == GB_READ_ROM) {
        const qint64 pairs = kind.isGrouped ? (banks + kGroupBanks - 1) / kGroupBanks : 1;
        const qint64 reads = banks - pairs;
        return {hasMapper ? reads + 1 : 0, reads};
    }
    const qint64 registerWrites = hasMapper ? ramBanks + 1 : 0;
    return operate == GB_READ_RAM ? DeviceOperations{registerWrites, ramBanks}
                                  : DeviceOperations{registerWrites + ramBanks, 0};
}

DeviceOperations leastForGba(int operate, const ScriptKind &kind)
{
    const qint64 pieces = operate == GBA_READ_ROM ? kind.romSize / kGbaPiece
                                                  : (kind.ramSize + kSavePiece - 1) / kSavePiece;
    return operate == GBA_WRITE_RAM ? DeviceOperations{1, 0} : DeviceOperations{pieces, pieces};
}

} // namespace

const ScriptKind *findScriptKind(const QString &scriptName)
{
    for (const ScriptKind &kind : kKinds) {
        if (scriptName == QLatin1String(kind.script))
            return &kind;
    }
    return nullptr;
}

DeviceOperations leastOperations(int operate, const ScriptKind &kind)
{
    return kind.isGba ? leastForGba(operate, kind) : leastForGb(operate, kind);
}
