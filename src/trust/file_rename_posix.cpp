#include "trust/file_rename.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

// The file itself is on the disk already; without this its name may not be. A file system that can
// not do it (-1) has no better way either.
void syncFolderOf(const QString &path)
{
    const QByteArray folder = QFile::encodeName(QFileInfo(path).absolutePath());
    const int descriptor = ::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor == -1)
        return;
    static_cast<void>(::fsync(descriptor));
    ::close(descriptor);
}

// A temporary file is made for its owner alone. A new name gets what any new file gets, a replaced
// one keeps what it had. A file system without modes refuses, and needs none.
void setUsualMode(const QString &from, const QString &to)
{
    struct stat old {
    };
    mode_t mode = 0;
    if (::stat(QFile::encodeName(to).constData(), &old) == 0) {
        mode = old.st_mode & 07777;
    } else {
        const mode_t mask = ::umask(0);
        ::umask(mask);
        mode = 0666 & ~mask;
    }
    static_cast<void>(::chmod(QFile::encodeName(from).constData(), mode));
}

bool renameReplacing(const QString &from, const QString &to, QString *reason)
{
    if (std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0)
        return true;
    *reason = QString::fromLocal8Bit(std::strerror(errno));
    return false;
}

bool renameKeeping(const QString &from, const QString &to, QString *reason)
{
    QFile file(from);
    if (file.rename(to))
        return true;
    *reason = file.errorString();
    return false;
}

} // namespace

FileTrouble renameFile(const QString &from, const QString &to, bool replaces)
{
    QString reason;
    setUsualMode(from, to);
    if (!(replaces ? renameReplacing(from, to, &reason) : renameKeeping(from, to, &reason)))
        return {FileFault::NotRenamed, to, reason};
    syncFolderOf(to);
    return {};
}
