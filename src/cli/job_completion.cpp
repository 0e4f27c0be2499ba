// From what is known of a cartridge to a job.
#include "cli/cli_options.h"

#include "cart/setting_tables.h"
#include "cli/cli_command.h"
#include "cli/option_table.h"

namespace
{

bool refuse(QString *problem, const QString &reason)
{
    *problem = reason;
    return false;
}

template <typename Table>
bool needChoice(const std::optional<int> &value, const char *option, const Table &table,
                QString *problem)
{
    return value || refuse(problem, QStringLiteral("Missing --%1: one of %2.")
                                        .arg(QLatin1String(option), choices(table)));
}

bool needSize(const std::optional<int> &value, const char *option, QString *problem)
{
    return value || refuse(problem, QStringLiteral("Missing --%1: the size can not be guessed.")
                                        .arg(QLatin1String(option)));
}

// The sizes that the command moves.
bool takeSize(const CliCommand &command, const CartridgeValues &values, CliJob *job,
              QString *problem)
{
    switch (command.moves) {
    case MovedData::Save:
        if (!needSize(values.ramSize, "ram-size", problem))
            return false;
        job->ramSize = *values.ramSize;
        return true;
    case MovedData::Rom:
        if (!needSize(values.romSize, "rom-size", problem))
            return false;
        job->romSize = *values.romSize;
        return true;
    case MovedData::RomFile:
        return true;
    }
    return true;
}

bool completeGb(const CliCommand &command, const CartridgeValues &values, CliJob *job,
                QString *problem)
{
    if (!needChoice(values.mapper, "mapper", kMappers, problem))
        return false;
    const int row = rowWithValue(kMappers, *values.mapper);
    job->operate = command.gbCode;
    job->scriptName = QString::fromLatin1(kMappers[static_cast<std::size_t>(row)].script);
    return takeSize(command, values, job, problem);
}

// Any other pair of type and size would silently be handled as SRAM.
bool checkSaveSize(const CliJob &job, QString *problem)
{
    const auto first = static_cast<std::size_t>(offeredSaveSizes(job.saveType));
    for (std::size_t row = first; row < first + kOfferedSaveSizes; ++row) {
        if (kGbaSaveSizes[row].value == job.ramSize)
            return true;
    }
    const auto type = static_cast<std::size_t>(rowWithValue(kGbaSaveTypes, job.saveType));
    return refuse(problem, QStringLiteral("--ram-size %1: a save of type %2 has %3 or %4 bytes.")
                               .arg(job.ramSize)
                               .arg(QString::fromLatin1(kGbaSaveTypes[type].label).toLower())
                               .arg(kGbaSaveSizes[first].value)
                               .arg(kGbaSaveSizes[first + 1].value));
}

bool completeGba(const CliCommand &command, const CartridgeValues &values, CliJob *job,
                 QString *problem)
{
    job->operate = command.gbaCode;
    job->scriptName = kGbaScript;
    const bool movesSave = command.moves == MovedData::Save;
    if (movesSave && !needChoice(values.saveType, "save-type", kGbaSaveTypes, problem))
        return false;
    if (!takeSize(command, values, job, problem))
        return false;
    if (!movesSave)
        return true;
    job->saveType = *values.saveType;
    return checkSaveSize(*job, problem);
}

} // namespace

bool completeJob(const CliCommand &command, const QString &fileName, const CartridgeValues &values,
                 CliJob *job, QString *problem)
{
    job->fileName = fileName;
    if (!values.system)
        return refuse(problem, QStringLiteral("Missing --system: one of gb, gba."));
    return *values.system == kSystemGba ? completeGba(command, values, job, problem)
                                        : completeGb(command, values, job, problem);
}
