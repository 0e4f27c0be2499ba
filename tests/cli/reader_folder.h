// A removable drive E that has the reader's files and is no reader: it answers with what a test put
// there. Its label is "READER".
//
// On Linux it is a folder of the test's own that is declared to be a drive. On Windows it is the
// drive E that the tests find prepared; only one of these can exist at a time.
#pragma once

#include "program_run.h"

#include <QString>
#include <QTemporaryDir>

class ReaderFolder
{
public:
    // The drive holds an identity file in which the reader calls itself "FOLDER", and `dataSize`
    // bytes of noise as its data.
    explicit ReaderFolder(std::uint32_t dataSize);

    // Puts a folder in the command file's place, so that no command can be written.
    void refuseCommands() const;

    // Path of one of the drive's files, by the folder behind the drive.
    QString path(const QString &name) const { return m_root + "/" + name; }
    // What makes a program find the drive.
    ReaderChoice choice() const;

private:
    QTemporaryDir m_own;
    QString m_root;
};

// The two differ between platforms: the folder behind the drive, emptied, of which `own` may become
// one; and the declaration of it that the program needs.
QString readerFolderRoot(const QTemporaryDir &own);
QString readerFolderDeclaration(const QString &root);
