// The virtual reader as a program of its own, mounted as a real file system. Without FUSE a test
// that needs it fails.
#pragma once

#include <QJsonObject>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>
#include <QVector>

class MountedReader
{
public:
    MountedReader();
    // Another program in the reader's place, with arguments before those of the reader.
    explicit MountedReader(const QStringList &program);
    ~MountedReader();

    // Mounts a reader with this image in its slot, empty for none; sectors are as strict as a
    // disk's. `savePath` may be empty; `options` are more of the reader's own. Waits until the
    // mount stands.
    // Returns: why it does not; empty on success.
    QString start(const QString &cartPath, const QString &savePath = QString(),
                  const QStringList &options = {});

    // Unmounts as a user does, refused while anybody has a file open. Returns: the refusal; empty
    // on success.
    QString unmount();

    // Value of GBDRIVER_DRIVES that declares the mount as drive E with the label "READER".
    QString declaration() const;
    QString folder() const { return m_folder.path(); }

    // Of the reader's program, to stop it and let it go on.
    qint64 processId() const { return m_process.processId(); }
    // Waits until the program has ended by itself. Returns: false if it does not.
    bool waitForEnd();

    // Everything that reached the reader since it was mounted, in order.
    QVector<QJsonObject> operations() const;

private:
    QStringList m_program;
    QTemporaryDir m_folder;
    QTemporaryDir m_logFolder;
    QProcess m_process;
};

// The unmounting alone; any thread. Tried again for three seconds: file dialogs of other programs
// look at every mount of the machine for a moment.
QString unmountFolder(const QString &folder);

// How often the reader took a command run, and how often it served a read, in a log.
int countCommandRuns(const QVector<QJsonObject> &operations);
int countReads(const QVector<QJsonObject> &operations, const QString &file);
