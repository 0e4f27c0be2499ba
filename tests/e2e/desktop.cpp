#include "desktop.h"

#include <QElapsedTimer>
#include <QThread>

namespace
{

constexpr int kStartMs = 30000;
constexpr int kToolMs = 30000;
constexpr int kWindowMs = 30000;
constexpr unsigned long kPollMs = 50;

} // namespace

Desktop::~Desktop()
{
    m_server.terminate();
    if (m_server.state() != QProcess::NotRunning && !m_server.waitForFinished(kToolMs))
        m_server.kill();
}

QString Desktop::start()
{
    if (!m_display.isEmpty())
        return QString();
    // A server without clients starts anew, as between two runs of xdotool, and then throws out a
    // program that is just connecting.
    m_server.start("Xvfb", {"-displayfd", "1", "-screen", "0", "1280x1024x24", "-nolisten", "tcp",
                            "-noreset"});
    while (!m_server.canReadLine()) {
        if (!m_server.waitForReadyRead(kStartMs))
            return "Xvfb cannot be started (" + m_server.errorString() +
                   "); install the package xvfb";
    }
    m_display = ":" + QString::fromLatin1(m_server.readLine().trimmed());
    xdotool({"version"});
    return m_error.isEmpty() ? QString() : m_error + "; install the package xdotool";
}

QString Desktop::xdotool(const QStringList &arguments)
{
    QProcess tool;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("DISPLAY", m_display);
    tool.setProcessEnvironment(environment);
    tool.start("xdotool", arguments);
    m_error.clear();
    if (!tool.waitForFinished(kToolMs) || tool.exitCode() != 0)
        m_error = "xdotool " + arguments.join(' ') + ": " + tool.errorString() + " " +
                  QString::fromLocal8Bit(tool.readAllStandardError());
    return QString::fromLocal8Bit(tool.readAllStandardOutput()).trimmed();
}

QString Desktop::focusWindow(const QString &title)
{
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < kWindowMs) {
        const QString window =
            xdotool({"search", "--onlyvisible", "--name", title}).section('\n', 0, 0);
        if (!window.isEmpty()) {
            // A window that has just been mapped may refuse the keyboard for a moment.
            xdotool({"windowfocus", "--sync", window});
            if (m_error.isEmpty())
                return window;
        }
        QThread::msleep(kPollMs);
    }
    return QString();
}

bool Desktop::waitUntilClosed(const QString &title)
{
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < kWindowMs) {
        if (xdotool({"search", "--onlyvisible", "--name", title}).isEmpty())
            return true;
        QThread::msleep(kPollMs);
    }
    return false;
}

void Desktop::press(const QStringList &keys)
{
    xdotool(QStringList{"key"} + keys);
}

void Desktop::type(const QString &text)
{
    xdotool({"type", text});
}

void Desktop::clickAt(const QString &window, int percentX, int percentY)
{
    // "WIDTH=444" and "HEIGHT=493" on lines of their own, among others.
    const QString geometry = xdotool({"getwindowgeometry", "--shell", window});
    const auto part = [&](const char *name, int percent) {
        const QString value = geometry.section(name, 1).section('\n', 0, 0);
        return QString::number(value.toInt() * percent / 100);
    };
    xdotool({"mousemove", "--window", window, part("WIDTH=", percentX), part("HEIGHT=", percentY)});
    xdotool({"click", "1"});
}
