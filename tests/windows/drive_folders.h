// Drives of several kinds for the kernel32 backend. Under Wine a drive is a folder, so a test can
// fill one, pull it out and put it back.
//
// The prefix that the tests run in has a fixed drive D and removable drives E, F and G. They stand
// in the folder that GBDRIVER_TEST_DRIVES names, as "d" to "g". A last one, H, is nobody's to fill:
// it holds a command file that cannot be written.
#pragma once

#include <QByteArray>
#include <QString>

// The bytes of an identity file whose 16 bytes of identity are `identity`.
QByteArray identityFile(const QByteArray &identity);

class DriveFolders
{
public:
    // All drives are there and empty, but for the file that labels drive E "READER". Wine reads it
    // when the prefix starts.
    DriveFolders();

    // Why the drives cannot be used; empty if they can.
    QString problem() const { return m_problem; }

    // Path of a file on a drive that does not go through its letter.
    QString path(char letter, const QString &name) const;
    bool addFile(char letter, const QString &name, const QByteArray &bytes) const;
    // Content of a file; a null array if it cannot be read.
    QByteArray content(char letter, const QString &name) const;

    bool pullOut(char letter) const;
    bool putBack(char letter) const;

private:
    QString folder(char letter) const;

    QString m_root;
    QString m_problem;
};
