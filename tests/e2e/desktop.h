// A desktop without people: an X server of its own and a hand on its keyboard and mouse. Without
// Xvfb or xdotool a test that needs them fails.
#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>

class Desktop
{
public:
    ~Desktop();

    // Once is enough for any number of programs, one after the other.
    // Returns: why there is none; empty on success.
    QString start();
    QString display() const { return m_display; }

    // Waits until a window whose title holds `title` is there, and gives it the keyboard.
    // Returns: the window's number; empty if it does not come.
    QString focusWindow(const QString &title);
    // Returns: true when no such window is left, waiting a while.
    bool waitUntilClosed(const QString &title);

    void press(const QStringList &keys);
    void type(const QString &text);
    // Clicks at a place in a window, in percent of its size.
    void clickAt(const QString &window, int percentX, int percentY);

    // Runs xdotool. Returns: its output; a failure is kept in lastError().
    QString xdotool(const QStringList &arguments);
    QString lastError() const { return m_error; }

private:
    QProcess m_server;
    QString m_display;
    QString m_error;
};
