// Files of a test: one call to read or write one, and a folder that goes with the test.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

// Content of a file; empty if it cannot be read.
QByteArray contentOf(const QString &path);

// Makes a file hold `bytes`. Ends the test program if the file cannot be written.
void putFile(const QString &path, const QByteArray &bytes);

// A new folder, as a user's: path of a name in it, a new file, the bytes of a file, all names.
class UserFolder
{
public:
    QString path(const QString &name = {}) const { return m_folder.filePath(name); }
    // Returns: the file's path.
    QString addFile(const QString &name, const QByteArray &bytes) const;
    QByteArray fileBytes(const QString &name) const { return contentOf(path(name)); }
    QStringList fileNames() const;

private:
    QTemporaryDir m_folder;
};
