#include "driven_window.h"

#include <QVector>
#include <QtTest>

namespace
{

constexpr int kStepMs = 60000;
constexpr int kDialogMs = 2000; // until the button is pressed again
const QString kTitle = "GB Driver 3.0 build";

} // namespace

DrivenWindow::~DrivenWindow()
{
    m_program.kill();
    m_program.waitForFinished(kStepMs);
}

QString DrivenWindow::start(const MountedReader &reader)
{
    const QString problem = m_desktop.start();
    if (!problem.isEmpty())
        return problem;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("DISPLAY", m_desktop.display());
    environment.insert("QT_QPA_PLATFORM", "xcb");
    environment.insert("XDG_RUNTIME_DIR", m_runtimeFolder.path());
    environment.insert("GBDRIVER_DRIVES", reader.declaration());
    environment.remove("GBDRIVER_VIRTUAL_READER");
    m_program.setProcessEnvironment(environment);
    m_program.start(WINDOW_PROGRAM, QStringList());
    m_window = m_desktop.focusWindow(kTitle);
    if (!m_window.isEmpty())
        return QString();
    return QString("The window does not come: %1; the program %2: %3")
        .arg(m_desktop.lastError(), m_program.state() == QProcess::Running ? "runs" : "has ended",
             QString::fromLocal8Bit(m_program.readAllStandardError()));
}

void DrivenWindow::pressInSettings(const QStringList &keys)
{
    m_desktop.press(keys);
}

// The log is the one wide area in the lower half; from it Tab leads over the buttons.
void DrivenWindow::press(WindowButton button)
{
    m_desktop.focusWindow(kTitle);
    m_desktop.clickAt(m_window, 40, 70);
    const QVector<QString> tabs(static_cast<int>(button), "Tab");
    m_desktop.press(tabs.toList() + QStringList{"space"});
}

QString DrivenWindow::answerDialog(WindowButton button, const QString &caption, const QString &path)
{
    if (!QTest::qWaitFor([&] { return opened(button, caption); }, kStepMs) ||
        m_desktop.focusWindow(caption).isEmpty())
        return "No dialog \"" + caption + "\" comes.";
    m_desktop.type(path);
    m_desktop.press({"Return"});
    return m_desktop.waitUntilClosed(caption) ? QString()
                                              : "The dialog \"" + caption + "\" stays open.";
}

bool DrivenWindow::opened(WindowButton button, const QString &caption)
{
    press(button);
    return QTest::qWaitFor(
        [&] {
            return !m_desktop.xdotool({"search", "--onlyvisible", "--name", caption}).isEmpty();
        },
        kDialogMs);
}

QString DrivenWindow::close()
{
    m_desktop.focusWindow(kTitle);
    m_desktop.press({"Escape"});
    if (!m_program.waitForFinished(kStepMs))
        return "The program does not end.";
    if (m_program.exitStatus() != QProcess::NormalExit || m_program.exitCode() != 0)
        return QString("The program ended with %1.").arg(m_program.exitCode());
    return QString::fromLocal8Bit(m_program.readAllStandardError());
}
