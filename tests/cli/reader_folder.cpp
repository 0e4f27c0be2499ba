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
    putFile(path("K-DRIVER.DMP"), identity);
    putFile(path("DUMP.ROM"), noise(static_cast<int>(dataSize), 3));
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
