#include "drive_folders.h"

#include <QDir>
#include <QFile>

namespace
{

constexpr int kIdentityOffset = 0x8000;
constexpr int kIdentityFileSize = 0x10000;
constexpr char kLetters[] = {'D', 'E', 'F', 'G'};

} // namespace

QByteArray identityFile(const QByteArray &identity)
{
    QByteArray bytes(kIdentityFileSize, 'x');
    return bytes.replace(kIdentityOffset, identity.size(), identity);
}

DriveFolders::DriveFolders() : m_root(QString::fromLocal8Bit(qgetenv("GBDRIVER_TEST_DRIVES")))
{
    if (m_root.isEmpty()) {
        m_problem = "GBDRIVER_TEST_DRIVES does not name the folder of the drives";
        return;
    }
    for (const char letter : kLetters) {
        QDir drive(folder(letter));
        for (const QFileInfo &entry : drive.entryInfoList(QDir::Files | QDir::Hidden))
            QFile::setPermissions(entry.filePath(), QFile::ReadOwner | QFile::WriteOwner);
        if (!drive.removeRecursively() || !QDir().mkpath(folder(letter)))
            m_problem = "The drive's folder cannot be emptied: " + folder(letter);
        QDir(folder(letter) + ".away").removeRecursively();
    }
    if (!addFile('E', ".windows-label", "READER\n"))
        m_problem = "Drive E cannot be labelled";
}

QString DriveFolders::folder(char letter) const
{
    return m_root + "/" + QChar(letter).toLower();
}

QString DriveFolders::path(char letter, const QString &name) const
{
    return folder(letter) + "/" + name;
}

bool DriveFolders::addFile(char letter, const QString &name, const QByteArray &bytes) const
{
    QFile file(path(letter, name));
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

QByteArray DriveFolders::content(char letter, const QString &name) const
{
    QFile file(path(letter, name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool DriveFolders::pullOut(char letter) const
{
    return QDir().rename(folder(letter), folder(letter) + ".away");
}

bool DriveFolders::putBack(char letter) const
{
    return QDir().rename(folder(letter) + ".away", folder(letter));
}
