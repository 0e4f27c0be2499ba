#include "reader_folder.h"

#include "drive_folders.h"

QString readerFolderRoot(const QTemporaryDir & /*own*/)
{
    const DriveFolders drives;
    if (!drives.problem().isEmpty())
        qFatal("%s", qPrintable(drives.problem()));
    return drives.path('E', "");
}

// The drive is there for every program.
QString readerFolderDeclaration(const QString & /*root*/)
{
    return {};
}
