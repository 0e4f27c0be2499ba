// The real window on an X server of its own, used with keyboard and mouse, with a mounted reader as
// its drive.
#pragma once

#include "desktop.h"
#include "mounted_reader.h"

#include <QProcess>
#include <QString>
#include <QTemporaryDir>

#include <memory>

// Pressed by its shortcut.
enum class WindowButton { Info, Dump, Flash, ReadRam, WriteRam, ReadAgain };

class DrivenWindow
{
public:
    // On a desktop of its own, unless it is given one.
    explicit DrivenWindow(std::shared_ptr<Desktop> desktop = std::make_shared<Desktop>());
    // The program is started by another one, with these arguments before it.
    explicit DrivenWindow(const QStringList &starter);
    ~DrivenWindow();

    // Starts the X server and the program, and waits for the window.
    // Returns: why it does not come; empty on success.
    QString start(const MountedReader &reader) { return start(reader.declaration()); }
    // `declaration`: of GBDRIVER_DRIVES; empty: every removable drive of the system.
    QString start(const QString &declaration);

    // From the tab bar of a fresh window over the lists of the settings: system, mapper, ROM size,
    // RAM size. Each Tab leads to the next one; Home, End, Up and Down choose.
    void pressInSettings(const QStringList &keys);
    void press(WindowButton button);
    // Presses a button until its file dialog comes, as it does nothing while a job runs.
    // Returns: what went wrong; empty on success.
    QString openDialog(WindowButton button, const QString &caption);
    // Answers the open dialog, also the question whether a file that exists is to be replaced.
    // Returns: what went wrong; empty on success.
    QString answerDialog(const QString &caption, const QString &path);
    // Both.
    QString answerDialog(WindowButton button, const QString &caption, const QString &path);

    // The log as text, by way of the clipboard.
    QString log();
    // Waits until the log holds `text`. Returns: the whole log.
    QString logWith(const QString &text);

    // Where the program keeps its backups, and the contents of the files there.
    QString backupFolder() const { return m_runtimeFolder.filePath("data/gbdriver/backups"); }
    QList<QByteArray> backups() const;

    qint64 processId() const { return m_program.processId(); }
    // Waits until the program has ended by itself.
    // Returns: what it said or how it failed; empty if it ended well and quietly.
    QString waitForEnd();

    // Closes the window and waits until the program has ended.
    // Returns: what it said or how it failed; empty if it ended well and quietly.
    QString close();

private:
    bool opened(WindowButton button, const QString &caption);
    bool answered(const QString &caption, const QString &dialog, const QString &path);

    QStringList m_starter;
    std::shared_ptr<Desktop> m_desktop;
    QTemporaryDir m_runtimeFolder;
    QProcess m_program;
    QString m_window;
};
