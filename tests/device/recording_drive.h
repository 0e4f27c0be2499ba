// A drive backend for tests: records every call, serves what the test laid out, and fails when told
// to. No file of the system is touched.
//
// Calls are kept as short texts, so that a whole exchange is one comparison:
//   "drives", "type E:", "label E:", "release",
//   "open E:\DUMP.ROM unbuffered", "open E:\DUMP.ROM buffered", "create E:\CMD.CMD",
//   "may write E:\CMD.CMD",
//   "seek 32768", "read 1024 at 32768", "write 512 at 0", "size", "close".
// A file that is destroyed without having been closed leaves "dropped E:\CMD.CMD".
#pragma once

#include "device/drive_backend.h"

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QStringList>

#include <functional>

enum class DriveCall { Label, OpenRead, OpenWrite, Read, Write, Size, Close };

// What one open for writing left behind, recorded when it ends.
struct WrittenRun {
    QString path;
    QByteArray bytes;
};

// One read, with the memory that the caller handed in.
struct RequestedRead {
    QString path;
    std::uint32_t offset;
    std::uint32_t length;
    void *destination;
};

class RecordingDrive : public DriveBackend
{
public:
    // --- laying out ------------------------------------------------------------------------------

    // Adds a logical drive. A drive of type NoRoot has its bit in the mask and nothing behind it.
    void addDrive(char letter, DriveType type, const QByteArray &label = QByteArray());
    // Pulls a drive out: its bit leaves the mask, its files cannot be opened.
    void removeDrive(char letter);

    // Sets what `path` holds, or removes it; opening a missing file for reading fails.
    void setContent(const QString &path, const QByteArray &content);
    void removeFile(const QString &path);

    // Contents that the next opens for reading find, one each; the last one stays.
    void queueContents(const QString &path, const QList<QByteArray> &contents);

    // Lets `times` calls of this kind fail, after `skip` that work.
    void failNext(DriveCall call, int skip = 0, int times = 1);

    // The count that a failing or short write reports; a short write is one that does not fail.
    void setNextWriteCount(std::uint32_t count);

    // Called in the middle of every read.
    std::function<void()> onRead;

    // --- looking back ----------------------------------------------------------------------------

    QStringList calls;
    QList<WrittenRun> runs;
    QList<RequestedRead> reads;
    int openFiles = 0;

    QByteArray content(const QString &path) const { return m_files.value(path); }
    bool hasFile(const QString &path) const { return m_files.contains(path); }
    // Forgets the recorded calls, runs and reads; layout and scripted failures stay.
    void forgetCalls();

    // --- the seam --------------------------------------------------------------------------------

    std::uint32_t logicalDrives() override;
    DriveType driveType(const char *root) override;
    DriveStatus volumeLabel(const char *root, char *label, std::uint32_t capacity) override;
    DriveStatus openForRead(const char *path, Buffering buffering,
                            std::unique_ptr<DriveFile> *file) override;
    DriveStatus openForWrite(const char *path, std::unique_ptr<DriveFile> *file) override;
    DriveStatus mayWrite(const char *path) override;
    void releaseDrive() override;

private:
    friend class RecordedFile;

    struct Drive {
        DriveType type;
        QByteArray label;
    };
    struct Failure {
        int skip;
        int times;
    };

    bool takesFailure(DriveCall call);
    bool canReach(const QString &path) const;

    QMap<char, Drive> m_drives;
    QMap<QString, QByteArray> m_files;
    QMap<QString, QList<QByteArray>> m_queued;
    QMap<DriveCall, Failure> m_failures;
    qint64 m_nextWriteCount = -1;
};

// Puts the reader on drive E of `drive`, with its three files (the command file is missing until
// the first command), and makes the process-wide link use it: found on E, no error, no identity
// yet.
void attachReader(RecordingDrive *drive);

constexpr char kIdentityPath[] = "E:\\K-DRIVER.DMP";
constexpr char kDumpPath[] = "E:\\DUMP.ROM";
constexpr char kCommandPath[] = "E:\\CMD.CMD";
