#include "linux_reader_folder.h"

#include "files.h"

#include <QDir>
#include <QFile>
#include <QtTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

LinuxReaderFolder::LinuxReaderFolder(const QString &place, const QString &name,
                                     const QByteArray &label)
    : m_temporary(place + "/gbdriver-test-XXXXXX"), m_name(name)
{
    QDir(parent()).mkdir(name);
    putFile(path("K-DRIVER.DMP"), "");
    qputenv("GBDRIVER_DRIVES", "E=" + QFile::encodeName(folder()) + ":" + label);
}

LinuxReaderFolder::~LinuxReaderFolder()
{
    qunsetenv("GBDRIVER_DRIVES");
}

std::unique_ptr<DriveBackend> LinuxReaderFolder::scannedBackend()
{
    std::unique_ptr<DriveBackend> backend = createPlatformBackend();
    (void)backend->logicalDrives();
    return backend;
}

void addPlaceRows()
{
    QTest::addColumn<QString>("place");
    QTest::newRow("temporary folder") << QDir::tempPath();
    if (QDir("/dev/shm").exists())
        QTest::newRow("memory file system") << QString("/dev/shm");
}

quint64 inodeOf(const QString &path)
{
    struct stat status = {};
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_ino : 0;
}

QStringList entriesOf(const QString &folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System |
                                  QDir::NoDotAndDotDot);
}

QList<int> descriptorsOn(const QString &path)
{
    const QString wanted = QFileInfo(path).canonicalFilePath();
    QList<int> descriptors;
    const QDir open("/proc/self/fd");
    for (const QString &name : open.entryList(QDir::AllEntries | QDir::System)) {
        const QByteArray link = QFile::encodeName(open.filePath(name));
        char target[4096] = {};
        if (::readlink(link.constData(), target, sizeof(target) - 1) > 0 &&
            QFile::decodeName(target) == wanted)
            descriptors.append(name.toInt());
    }
    return descriptors;
}

int openFlags(int descriptor)
{
    const QByteArray info = contentOf(QString("/proc/self/fdinfo/%1").arg(descriptor));
    for (const QByteArray &line : info.split('\n')) {
        if (line.startsWith("flags:"))
            return line.mid(6).trimmed().toInt(nullptr, 8);
    }
    return 0;
}

bool acceptsDirectReads(const QString &path)
{
    const int descriptor = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_DIRECT);
    return descriptor >= 0 && ::close(descriptor) == 0;
}

DriveStatus writeThrough(DriveBackend *backend, const QByteArray &path, const QByteArray &bytes)
{
    std::unique_ptr<DriveFile> file;
    DriveStatus status = backend->openForWrite(path.constData(), &file);
    if (!status.ok())
        return status;
    std::uint32_t count = 0;
    const auto length = static_cast<std::uint32_t>(bytes.size());
    status = file->write(bytes.constData(), length, &count);
    const DriveStatus closed = file->close();
    if (status.ok() && count != length)
        return {DriveErrorCode::InputOutput, "success, but a short count"};
    return status.ok() ? closed : status;
}

DriveStatus readThrough(DriveBackend *backend, const QByteArray &path, Buffering buffering,
                        std::uint32_t offset, std::uint32_t length, QByteArray *bytes)
{
    std::unique_ptr<DriveFile> file;
    DriveStatus status = backend->openForRead(path.constData(), buffering, &file);
    if (!status.ok())
        return status;
    QByteArray buffer(static_cast<int>(length), '\0');
    std::uint32_t count = 0;
    file->seek(offset);
    status = file->read(buffer.data(), length, &count);
    *bytes = buffer.left(static_cast<int>(count));
    const DriveStatus closed = file->close();
    return status.ok() ? closed : status;
}
