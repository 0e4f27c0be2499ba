#include "reader_folder.h"

#include <QDir>

namespace
{

constexpr int kIdentityOffset = 0x8000;
constexpr int kIdentityFileSize = 0x10000;

} // namespace

ReaderFolder::ReaderFolder(std::uint32_t dataSize) : m_root(readerFolderRoot(m_own))
{
    QByteArray identity(kIdentityFileSize, '\0');
    identity.replace(kIdentityOffset, 6, "FOLDER");
    if (!writeFile(path("K-DRIVER.DMP"), identity) ||
        !writeFile(path("DUMP.ROM"), noise(dataSize, 3)))
        qFatal("cannot lay out the drive in %s", qPrintable(m_root));
}

void ReaderFolder::refuseCommands() const
{
    if (!QDir(m_root).mkdir("CMD.CMD"))
        qFatal("cannot put a folder into %s", qPrintable(m_root));
}

ReaderChoice ReaderFolder::choice() const
{
    return {"", readerFolderDeclaration(m_root)};
}
