// Folders that play the reader's drive for the Linux backend, and a look at files and descriptors
// past it.
#pragma once

#include "device/drive_backend.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QTemporaryDir>

#include <memory>

// A folder declared as drive E through GBDRIVER_DRIVES, inside a temporary folder of `place`. It
// holds an identity file without content, and nothing else.
class LinuxReaderFolder
{
public:
    explicit LinuxReaderFolder(const QString &place, const QString &name = "reader",
                               const QByteArray &label = "READER");
    ~LinuxReaderFolder();

    bool isValid() const { return m_temporary.isValid(); }
    // The temporary folder around the drive.
    QString parent() const { return m_temporary.path(); }
    QString folder() const { return parent() + "/" + m_name; }
    QString path(const QString &fileName) const { return folder() + "/" + fileName; }

    // A backend of the platform that has looked for drives once.
    static std::unique_ptr<DriveBackend> scannedBackend();

private:
    QTemporaryDir m_temporary;
    QString m_name;
};

// Adds a row for every place whose files may behave differently: the temporary folder, and the
// memory file system where there is one.
void addPlaceRows();

quint64 inodeOf(const QString &path);
QStringList entriesOf(const QString &folder);

// Descriptors of this process that are open on `path`.
QList<int> descriptorsOn(const QString &path);
// Open flags (O_DIRECT, O_CLOEXEC ...) of a descriptor of this process.
int openFlags(int descriptor);
// Whether the file system lets `path` be opened with O_DIRECT.
bool acceptsDirectReads(const QString &path);

// One whole transfer through a backend, for tests that only look at what it leaves behind.
DriveStatus writeThrough(DriveBackend *backend, const QByteArray &path, const QByteArray &bytes);
DriveStatus readThrough(DriveBackend *backend, const QByteArray &path, Buffering buffering,
                        std::uint32_t offset, std::uint32_t length, QByteArray *bytes);
