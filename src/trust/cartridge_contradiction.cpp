#include "trust/cartridge_contradiction.h"

#include "cart/setting_tables.h"

namespace
{

constexpr int kTama5Row = 6; // of kMappers
constexpr int kBankedFlash = 128 * 1024;

using Value = std::optional<int> CartridgeValues::*;

struct ContradictionRow {
    Contradiction contradiction;
    Value value;
    CartridgeTask firstTask; // for which it matters; and for those behind it
};

constexpr ContradictionRow kRows[] = {
    {Contradiction::Mapper, &CartridgeValues::mapper, CartridgeTask::Dump},
    {Contradiction::SaveType, &CartridgeValues::saveType, CartridgeTask::ReadSave},
    {Contradiction::SaveSize, &CartridgeValues::ramSize, CartridgeTask::WriteSave},
};

} // namespace

Contradiction contradictionOf(CartridgeTask task, const CartridgeValues &said,
                              const CartridgeValues &named)
{
    if (task == CartridgeTask::Flash)
        return Contradiction::None;
    for (const ContradictionRow &row : kRows) {
        const bool isSaid = said.*row.value && named.*row.value;
        if (isSaid && task >= row.firstTask && said.*row.value != named.*row.value)
            return row.contradiction;
    }
    return Contradiction::None;
}

bool isNamedSave(const CartridgeValues &used, const CartridgeValues &named)
{
    return named.ramSize && named.ramSize == used.ramSize && named.saveType == used.saveType &&
           named.mapper == used.mapper;
}

bool writesWhereSavesAre(const CartridgeJob &readJob)
{
    if (readJob.operate == GBA_READ_RAM)
        return readJob.saveType == kSaveFlash && readJob.ramSize == kBankedFlash;
    const bool isGbRead = isReadJob(readJob.operate) && !isGbaJob(readJob.operate);
    return isGbRead && mapperOf(readJob) == kMappers[kTama5Row].value;
}
