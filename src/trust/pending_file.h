// A file of the user's that comes into being as a whole or not at all: written under a temporary
// name in the same folder, brought to the disk, renamed.
//
// Thread: one at a time; writing goes through the drive backend of the process.
#pragma once

#include <QByteArray>
#include <QString>

enum class ExistingFile {
    Keep, // a file of that name is an error
    Replace
};

class PendingFile
{
public:
    // Takes a temporary name beside `finalPath`, so that a folder that cannot be written to shows
    // before a long transfer. Check problem().
    PendingFile(const QString &finalPath, ExistingFile existing);

    // Removes the temporary file unless it was renamed.
    ~PendingFile();
    PendingFile(const PendingFile &) = delete;
    PendingFile &operator=(const PendingFile &) = delete;

    // Why there can be no such file, or the last write or rename failed; empty if all is well.
    QString problem() const { return m_problem; }

    // True if problem() is that a file of that name exists.
    bool isTaken() const { return m_isTaken; }

    // Where to write, for a job that does it itself.
    QString temporaryPath() const { return m_temporaryPath; }

    // Writes and reads back. Returns: false with the reason in problem().
    bool write(const QByteArray &bytes);

    // Gives the file its name, or `otherPath` in the same folder. Returns: false with the reason in
    // problem(); the old file, if there is one, is then as it was.
    bool commit(const QString &otherPath = {});

private:
    bool holds(const QByteArray &bytes);

    QString m_finalPath;
    QString m_temporaryPath;
    QString m_problem;
    ExistingFile m_existing;
    bool m_isTaken = false;
};

// A whole file of the user's. Returns: false with the reason in `*problem`.
bool readUserFile(const QString &path, QByteArray *bytes, QString *problem);
