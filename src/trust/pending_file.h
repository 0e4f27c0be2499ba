// A file of the user's that comes into being as a whole or not at all: written under a temporary
// name in the same folder, brought to the disk, renamed.
//
// Thread: one at a time; writing goes through the drive backend of the process.
#pragma once

#include "trust/file_trouble.h"

#include <QByteArray>

enum class ExistingFile {
    Keep, // a file of that name is an error
    Replace
};

class PendingFile
{
public:
    // Takes a temporary name beside `finalPath`, so that a folder that cannot be written to shows
    // before a long transfer. Check trouble().
    PendingFile(const QString &finalPath, ExistingFile existing);

    // Removes the temporary file unless it was renamed.
    ~PendingFile();
    PendingFile(const PendingFile &) = delete;
    PendingFile &operator=(const PendingFile &) = delete;

    // Why there can be no such file, or the last write or rename failed.
    const FileTrouble &trouble() const { return m_trouble; }

    // Where to write, for a job that does it itself.
    QString temporaryPath() const { return m_temporaryPath; }

    // Writes and reads back. Returns: false with the reason in trouble().
    bool write(const QByteArray &bytes);

    // Gives the file its name, or `otherPath` in the same folder. Returns: false with the reason in
    // trouble(); the old file, if there is one, is then as it was.
    bool commit(const QString &otherPath = {});

private:
    FileTrouble check(const QByteArray &bytes) const;

    QString m_finalPath;
    QString m_temporaryPath;
    FileTrouble m_trouble;
    ExistingFile m_existing;
};

// A whole file of the user's. `*bytes` is as before if it cannot be read.
FileTrouble readUserFile(const QString &path, QByteArray *bytes);
