#include "reader_folder.h"

QString readerFolderRoot(const QTemporaryDir &own)
{
    return own.path();
}

QString readerFolderDeclaration(const QString &root)
{
    return "E=" + root + ":READER";
}
