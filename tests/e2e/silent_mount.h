// A mounted file system that never answers: who looks into it, or asks how full it is, waits until
// it is gone. Without FUSE a test that needs it fails.
#pragma once

#include <QProcess>
#include <QTemporaryDir>

class SilentMount
{
public:
    SilentMount() = default;
    // Unmounts; whoever waits gets an error.
    ~SilentMount();

    // `source`: what the table of mounts names as its device; empty: a path inside of itself.
    // Returns: why it is not mounted; empty on success.
    QString start(const QString &source = QString());

    QString folder() const { return m_folder.path(); }

private:
    QTemporaryDir m_folder;
    QProcess m_process;
};
