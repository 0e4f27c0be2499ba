#include "driven_window.h"

#include "files.h"

#include <QDir>
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
    environment.insert("XDG_DATA_HOME", m_runtimeFolder.filePath("data"));
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

void DrivenWindow::press(WindowButton button)
{
    const char *const kShortcuts[] = {"ctrl+i", "ctrl+d", "ctrl+f", "ctrl+r", "ctrl+w", "ctrl+e"};
    m_desktop.focusWindow(kTitle);
    m_desktop.press({kShortcuts[static_cast<int>(button)]});
}

QString DrivenWindow::log()
{
    m_desktop.focusWindow(kTitle);
    m_desktop.press({"ctrl+shift+c"});
    QProcess reader;
    reader.setProcessEnvironment(m_program.processEnvironment());
    reader.start(CLIPBOARD_PROGRAM, QStringList());
    reader.waitForFinished(kStepMs);
    return QString::fromLocal8Bit(reader.readAllStandardOutput());
}

QString DrivenWindow::logWith(const QString &text)
{
    QString shown;
    // Whether it comes is the caller's to check.
    static_cast<void>(QTest::qWaitFor([&] { return (shown = log()).contains(text); }, kStepMs));
    return shown;
}

QList<QByteArray> DrivenWindow::backups() const
{
    QList<QByteArray> contents;
    const QDir folder(m_runtimeFolder.filePath("data/gbdriver/backups"));
    for (const QString &name : folder.entryList(QDir::Files))
        contents << contentOf(folder.filePath(name));
    return contents;
}

QString DrivenWindow::answerDialog(WindowButton button, const QString &caption, const QString &path)
{
    if (!QTest::qWaitFor([&] { return opened(button, caption); }, kStepMs) ||
        m_desktop.focusWindow(caption).isEmpty())
        return "No dialog \"" + caption + "\" comes.";
    m_desktop.type(path);
    const bool replaces =
        button != WindowButton::Flash && button != WindowButton::WriteRam && QFile::exists(path);
    m_desktop.press({"Return"});
    if (replaces && !answeredYes(caption))
        return "Nothing asks whether the file is to be replaced.";
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

// The question has the caption of the dialog that asks it.
bool DrivenWindow::answeredYes(const QString &caption)
{
    const QStringList search = {"search", "--onlyvisible", "--name", caption};
    const bool asks = QTest::qWaitFor(
        [&] { return m_desktop.xdotool(search).split('\n', Qt::SkipEmptyParts).size() == 2; },
        kStepMs);
    if (asks)
        m_desktop.press({"alt+y"});
    return asks;
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
