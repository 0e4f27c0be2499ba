#include "recording_drive.h"

#include "test_bytes.h"

#include "device/device_link.h"

#include <algorithm>
#include <cstring>

namespace
{

constexpr int kIdentityFileSize = 0x10000;
constexpr int kDumpFileSize = 0x100000;

DriveStatus scriptedFailure(const QString &call)
{
    return {DriveErrorCode::InputOutput, ("scripted failure: " + call).toStdString()};
}

} // namespace

class RecordedFile : public DriveFile
{
public:
    RecordedFile(RecordingDrive *drive, QString path, QByteArray content, bool forWriting)
        : m_drive(drive), m_path(std::move(path)), m_content(std::move(content)),
          m_forWriting(forWriting)
    {
        ++m_drive->openFiles;
    }

    ~RecordedFile() override
    {
        if (!m_closed)
            m_drive->calls.append("dropped " + m_path);
        end();
    }

    void seek(std::uint32_t offset) override
    {
        m_drive->calls.append(QString("seek %1").arg(offset));
        m_position = offset;
    }

    DriveStatus read(void *destination, std::uint32_t length, std::uint32_t *count) override
    {
        *count = 0;
        const QString call = QString("read %1 at %2").arg(length).arg(m_position);
        m_drive->calls.append(call);
        if (m_drive->onRead)
            m_drive->onRead();
        m_drive->reads.append({m_path, m_position, length, destination});
        if (m_forWriting || m_drive->takesFailure(DriveCall::Read))
            return scriptedFailure(call);
        const auto size = static_cast<std::uint32_t>(m_content.size());
        *count = m_position < size ? std::min(length, size - m_position) : 0;
        std::memcpy(destination, m_content.constData() + (*count == 0 ? 0 : m_position), *count);
        m_position += *count;
        return {};
    }

    DriveStatus write(const void *source, std::uint32_t length, std::uint32_t *count) override
    {
        const QString call = QString("write %1 at %2").arg(length).arg(m_position);
        m_drive->calls.append(call);
        const bool fails = !m_forWriting || m_drive->takesFailure(DriveCall::Write);
        *count = fails ? 0 : length;
        if (m_drive->m_nextWriteCount >= 0)
            *count = std::min(length, static_cast<std::uint32_t>(m_drive->m_nextWriteCount));
        m_drive->m_nextWriteCount = -1;
        m_content.replace(static_cast<int>(m_position), static_cast<int>(*count),
                          QByteArray(static_cast<const char *>(source), static_cast<int>(*count)));
        m_position += *count;
        return fails ? scriptedFailure(call) : DriveStatus{};
    }

    DriveStatus size(std::uint32_t *size) override
    {
        m_drive->calls.append("size");
        if (m_drive->takesFailure(DriveCall::Size))
            return scriptedFailure("size");
        *size = static_cast<std::uint32_t>(m_content.size());
        return {};
    }

    DriveStatus close() override
    {
        m_drive->calls.append(m_closed ? "closed twice" : "close");
        end();
        return m_drive->takesFailure(DriveCall::Close) ? scriptedFailure("close") : DriveStatus{};
    }

private:
    void end()
    {
        if (m_closed)
            return;
        m_closed = true;
        --m_drive->openFiles;
        if (!m_forWriting)
            return;
        m_drive->setContent(m_path, m_content);
        m_drive->runs.append({m_path, m_content});
    }

    RecordingDrive *m_drive;
    QString m_path;
    QByteArray m_content;
    bool m_forWriting;
    bool m_closed = false;
    std::uint32_t m_position = 0;
};

void RecordingDrive::addDrive(char letter, DriveType type, const QByteArray &label)
{
    m_drives.insert(letter, {type, label});
}

void RecordingDrive::removeDrive(char letter)
{
    m_drives.remove(letter);
}

void RecordingDrive::setContent(const QString &path, const QByteArray &content)
{
    m_files.insert(path, content);
}

void RecordingDrive::removeFile(const QString &path)
{
    m_files.remove(path);
}

void RecordingDrive::queueContents(const QString &path, const QList<QByteArray> &contents)
{
    m_queued[path] += contents;
}

void RecordingDrive::failNext(DriveCall call, int skip, int times)
{
    m_failures.insert(call, {skip, times});
}

void RecordingDrive::setNextWriteCount(std::uint32_t count)
{
    m_nextWriteCount = count;
}

void RecordingDrive::forgetCalls()
{
    calls.clear();
    runs.clear();
    reads.clear();
}

std::uint32_t RecordingDrive::logicalDrives()
{
    calls.append("drives");
    std::uint32_t mask = 0;
    for (auto drive = m_drives.constBegin(); drive != m_drives.constEnd(); ++drive)
        mask |= 1U << (drive.key() - 'A');
    return mask;
}

DriveType RecordingDrive::driveType(const char *root)
{
    calls.append(QString("type %1").arg(root));
    return m_drives.value(root[0], {DriveType::NoRoot, {}}).type;
}

DriveStatus RecordingDrive::volumeLabel(const char *root, char *label, std::uint32_t capacity)
{
    calls.append(QString("label %1").arg(root));
    if (takesFailure(DriveCall::Label) || !m_drives.contains(root[0]))
        return scriptedFailure(calls.last());
    const QByteArray text = m_drives.value(root[0]).label.left(static_cast<int>(capacity) - 1);
    std::memcpy(label, text.constData(), static_cast<std::size_t>(text.size()) + 1);
    return {};
}

DriveStatus RecordingDrive::openForRead(const char *path, Buffering buffering,
                                        std::unique_ptr<DriveFile> *file)
{
    const QString mode = buffering == Buffering::Unbuffered ? "unbuffered" : "buffered";
    calls.append(QString("open %1 %2").arg(path, mode));
    QList<QByteArray> &queued = m_queued[path];
    if (!queued.isEmpty())
        setContent(path, queued.takeFirst());
    if (takesFailure(DriveCall::OpenRead) || !hasFile(path) || !canReach(path))
        return scriptedFailure(calls.last());
    *file = std::make_unique<RecordedFile>(this, path, content(path), false);
    return {};
}

DriveStatus RecordingDrive::openForWrite(const char *path, std::unique_ptr<DriveFile> *file)
{
    calls.append(QString("create %1").arg(path));
    if (takesFailure(DriveCall::OpenWrite) || !canReach(path))
        return scriptedFailure(calls.last());
    *file = std::make_unique<RecordedFile>(this, path, QByteArray(), true);
    return {};
}

DriveStatus RecordingDrive::mayWrite(const char *path)
{
    calls.append(QString("may write ") + path);
    return {};
}

void RecordingDrive::releaseDrive()
{
    calls.append("release");
}

bool RecordingDrive::takesFailure(DriveCall call)
{
    const auto failure = m_failures.find(call);
    if (failure == m_failures.end() || failure->skip-- > 0)
        return false;
    if (--failure->times == 0)
        m_failures.erase(failure);
    return true;
}

// "E:\\X" needs its drive; any other path but an empty one is the system's.
bool RecordingDrive::canReach(const QString &path) const
{
    if (path.mid(1, 2) != ":\\")
        return !path.isEmpty();
    const DriveType noDrive = DriveType::NoRoot;
    return m_drives.value(path[0].toLatin1(), {noDrive, {}}).type != noDrive;
}

void attachReader(RecordingDrive *drive)
{
    static const QByteArray identityFile = patternBytes(kIdentityFileSize, 1);
    static const QByteArray dumpFile = patternBytes(kDumpFileSize, 2);
    drive->addDrive('E', DriveType::Removable, "READER");
    drive->setContent(kIdentityPath, identityFile);
    drive->setContent(kDumpPath, dumpFile);
    setDriveBackend(drive);
    deviceLink = DeviceLink();
    deviceLink.driveLetter = 'E';
    clearLastDriveError();
}
