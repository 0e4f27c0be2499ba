#include "cli/known_tables.h"

#include "cli/telling.h"
#include "trust/dat_folder.h"

namespace
{

bool readNamed(const QStringList &paths, QVector<DatFile> *tables, Reporter &reporter)
{
    for (const QString &path : paths) {
        DatFile table;
        QString problem;
        if (!readDatFile(path, &table, &problem)) {
            tellProblem(ExitCode::FileError, QStringLiteral("--dat ") + problem + QLatin1Char('.'),
                        CartridgeState::NotRead, reporter);
            return false;
        }
        if (table.leftOut != 0)
            reporter.log(QStringLiteral("%1: %2 entries without a SHA-1 or marked as bad are left "
                                        "out.")
                             .arg(path, QString::number(table.leftOut)));
        tables->append(table);
    }
    return true;
}

} // namespace

bool readTables(const QStringList &paths, QVector<DatFile> *tables, Reporter &reporter)
{
    if (!readNamed(paths, tables, reporter))
        return false;
    const DatFolder kept = readDatFolder(datFolder());
    for (const QString &problem : kept.problems)
        reporter.log(QStringLiteral("Not looked up: ") + problem);
    *tables += kept.tables;
    return true;
}
