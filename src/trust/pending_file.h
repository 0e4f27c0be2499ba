// A file of the user's that comes into being as a whole or not at all. How a whole file is made
// lies below the drive-and-file seam (device/user_file.h).
//
// Pipes and devices are no such files: they get the bytes when everything is known, and keep none
// of what a failed write has sent.
//
// Thread: one at a time; writing goes through the drive backend of the process.
#pragma once

#include "trust/file_trouble.h"

#include <QByteArray>

#include <memory>

class DriveFile;
struct DriveStatus;

enum class ExistingFile {
    Keep, // a file of that name is an error
    Replace
};

class PendingFile
{
public:
    // Begins a temporary file beside `finalPath`, so that a name or a folder that cannot be written
    // shows before a long transfer. Check trouble().
    PendingFile(const QString &finalPath, ExistingFile existing);

    // The temporary file goes with it, unless it got its name.
    ~PendingFile();
    PendingFile(const PendingFile &) = delete;
    PendingFile &operator=(const PendingFile &) = delete;

    // Why there can be no such file, or the last write or commit failed.
    const FileTrouble &trouble() const { return m_trouble; }

    // A pipe or a device, which has one name only. Not after a trouble of the name.
    bool isStream() const;

    // Sees to it that there is room for so many bytes. Returns: false with the reason in trouble().
    bool reserve(int bytes);

    // Writes and reads back. Returns: false with the reason in trouble().
    bool write(const QByteArray &bytes);

    // Gives the file its name, or another one. Returns: false with the reason in trouble(); the old
    // file, if there is one, is then as it was.
    bool commit(const QString &otherPath = {});

private:
    bool open(const QString &path);
    bool send(const QByteArray &bytes);
    bool fail(FileFault fault, const DriveStatus &status);
    FileTrouble check(const QByteArray &bytes);

    QString m_path;
    ExistingFile m_existing;
    FileTrouble m_trouble;
    std::unique_ptr<DriveFile> m_file; // null: there is none, or it is done
    QByteArray m_bytes;                // that were written
};

// Why a file of so many bytes could not be written to `path` now, in place of one that is there or
// not. Nothing is left of the attempt.
FileTrouble troubleOfWriting(const QString &path, int bytes);

// A whole file of the user's. `*bytes` is as before if it cannot be read.
FileTrouble readUserFile(const QString &path, QByteArray *bytes);
