#include "trust/dat_folder.h"

#include <QDir>
#include <QStandardPaths>

QString datFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           QStringLiteral("/gbdriver/dats");
}

DatFolder readDatFolder(const QString &folder)
{
    DatFolder read;
    const QStringList patterns{QStringLiteral("*.dat"), QStringLiteral("*.xml")};
    for (const QFileInfo &file : QDir(folder).entryInfoList(patterns, QDir::Files, QDir::Name)) {
        DatFile table;
        QString problem;
        if (readDatFile(file.filePath(), &table, &problem))
            read.tables.append(table);
        else
            read.problems.append(problem);
    }
    return read;
}
