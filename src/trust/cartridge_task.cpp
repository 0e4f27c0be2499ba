#include "trust/cartridge_task.h"

#include "cart/setting_tables.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <algorithm>

namespace
{

struct TaskRow {
    JobCode gbCode;
    JobCode gbaCode;
};

// In the order of CartridgeTask.
constexpr TaskRow kTasks[] = {{GB_READ_ROM, GBA_READ_ROM},
                              {GB_READ_RAM, GBA_READ_RAM},
                              {GB_WRITE_RAM, GBA_WRITE_RAM},
                              {GB_WRITE_FLASH, GBA_WRITE_FLASH}};

QString scriptPath(const QString &name)
{
    return mapperFolder() + QLatin1Char('/') + name;
}

MissingValue takeSize(const CartridgeValues &values, CartridgeJob *job)
{
    if (movesSave(job->operate)) {
        job->ramSize = values.ramSize.value_or(0);
        return values.ramSize ? MissingValue::None : MissingValue::SaveSize;
    }
    if (isFlashJob(job->operate))
        return MissingValue::None;
    job->romSize = values.romSize.value_or(0);
    return values.romSize ? MissingValue::None : MissingValue::RomSize;
}

MissingValue makeGbJob(const CartridgeValues &values, CartridgeJob *job)
{
    if (!values.mapper)
        return MissingValue::Mapper;
    const auto row = static_cast<std::size_t>(rowWithValue(kMappers, *values.mapper));
    job->scriptPath = scriptPath(QLatin1String(kMappers[row].script));
    return takeSize(values, job);
}

bool isOfferedPair(int saveType, int ramSize)
{
    const auto *first = kGbaSaveSizes.begin() + offeredSaveSizes(saveType);
    return std::any_of(first, first + kOfferedSaveSizes,
                       [ramSize](const SettingRow &row) { return row.value == ramSize; });
}

MissingValue makeGbaJob(const CartridgeValues &values, CartridgeJob *job)
{
    job->scriptPath = scriptPath(QLatin1String(kGbaScript));
    if (movesSave(job->operate) && !values.saveType)
        return MissingValue::SaveType;
    const MissingValue size = takeSize(values, job);
    if (size != MissingValue::None || !movesSave(job->operate))
        return size;
    job->saveType = *values.saveType;
    return isOfferedPair(job->saveType, job->ramSize) ? MissingValue::None : MissingValue::SavePair;
}

} // namespace

MissingValue makeJob(CartridgeTask task, const CartridgeValues &values, CartridgeJob *job)
{
    if (!values.system)
        return MissingValue::System;
    const TaskRow &row = kTasks[static_cast<std::size_t>(task)];
    const bool isGba = *values.system == kSystemGba;
    *job = CartridgeJob();
    job->operate = isGba ? row.gbaCode : row.gbCode;
    return isGba ? makeGbaJob(values, job) : makeGbJob(values, job);
}

CartridgeJob saveReadingJob(const CartridgeJob &writeJob)
{
    CartridgeJob job = writeJob;
    job.operate = isGbaJob(writeJob.operate) ? GBA_READ_RAM : GB_READ_RAM;
    return job;
}

CartridgeJob romReadingJob(const CartridgeJob &flashJob, int bytes)
{
    CartridgeJob job = flashJob;
    job.operate = GB_READ_ROM;
    job.romSize = bytes;
    return job;
}

std::optional<int> mapperOf(const CartridgeJob &job)
{
    const QString script = QFileInfo(job.scriptPath).fileName();
    for (const MapperRow &row : kMappers) {
        if (script == QLatin1String(row.script))
            return row.value;
    }
    return std::nullopt;
}

QString mapperFolder()
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/mapper");
}
