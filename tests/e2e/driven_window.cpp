#include "driven_window.h"

#include "files.h"

#include <QDir>
#include <QtTest>

#include <utility>

namespace
{

constexpr int kStepMs = 60000;
constexpr int kDialogMs = 2000; // until the button is pressed again
const QString kTitle = "GB Driver 3.0 build";
// The program for Windows that is to run in the place of the one that was built; empty: none.
const QString kUnderWine = qEnvironmentVariable("GBDRIVER_WINDOW_UNDER_WINE");

// A path of this machine as the program's dialogs take it.
QString dialogPath(const QString &path)
{
    return kUnderWine.isEmpty() ? path : "Z:" + QString(path).replace('/', '\\');
}

} // namespace

DrivenWindow::DrivenWindow(std::shared_ptr<Desktop> desktop) : m_desktop(std::move(desktop)) {}

DrivenWindow::DrivenWindow(const QStringList &starter) : DrivenWindow()
{
    m_starter = starter;
}

DrivenWindow::~DrivenWindow()
{
    m_program.kill();
    m_program.waitForFinished(kStepMs);
}

QString DrivenWindow::start(const QString &declaration)
{
    const QString problem = m_desktop->start();
    if (!problem.isEmpty())
        return problem;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("DISPLAY", m_desktop->display());
    environment.insert("QT_QPA_PLATFORM", "xcb");
    environment.insert("XDG_RUNTIME_DIR", m_runtimeFolder.path());
    environment.insert("XDG_DATA_HOME", m_runtimeFolder.filePath("data"));
    environment.remove("GBDRIVER_DRIVES");
    if (!declaration.isEmpty())
        environment.insert("GBDRIVER_DRIVES", declaration);
    environment.remove("GBDRIVER_VIRTUAL_READER");
    m_program.setProcessEnvironment(environment);
    const QStringList command = m_starter + QStringList{WINDOW_PROGRAM};
    if (kUnderWine.isEmpty())
        m_program.start(command.first(), command.mid(1));
    else
        m_program.start(UNDER_WINE_SCRIPT, {kUnderWine});
    m_window = m_desktop->focusWindow(kTitle);
    if (!m_window.isEmpty())
        return QString();
    return QString("The window does not come: %1; the program %2: %3")
        .arg(m_desktop->lastError(), m_program.state() == QProcess::Running ? "runs" : "has ended",
             QString::fromLocal8Bit(m_program.readAllStandardError()));
}

void DrivenWindow::pressInSettings(const QStringList &keys)
{
    // A window that has just come may miss keys; one that copies its log does not.
    static_cast<void>(logWith("Velora Driver Series"));
    m_desktop->press(keys);
}

void DrivenWindow::press(WindowButton button)
{
    const char *const kShortcuts[] = {"ctrl+i", "ctrl+d", "ctrl+f", "ctrl+r", "ctrl+w", "ctrl+e"};
    m_desktop->focusWindow(kTitle);
    m_desktop->press({kShortcuts[static_cast<int>(button)]});
}

QString DrivenWindow::log()
{
    m_desktop->focusWindow(kTitle);
    m_desktop->press({"ctrl+shift+c"});
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
    const QDir folder(backupFolder());
    for (const QString &name : folder.entryList(QDir::Files))
        contents << contentOf(folder.filePath(name));
    return contents;
}

QString DrivenWindow::openDialog(WindowButton button, const QString &caption)
{
    return QTest::qWaitFor([&] { return opened(button, caption); }, kStepMs)
               ? QString()
               : "No dialog \"" + caption + "\" comes.";
}

QString DrivenWindow::answerDialog(const QString &caption, const QString &path)
{
    const QString dialog = m_desktop->focusWindow(caption);
    const bool isAnswered =
        !dialog.isEmpty() &&
        QTest::qWaitFor([&] { return answered(caption, dialog, path); }, kStepMs);
    return isAnswered ? QString() : "The dialog \"" + caption + "\" stays open.";
}

QString DrivenWindow::answerDialog(WindowButton button, const QString &caption, const QString &path)
{
    const QString problem = openDialog(button, caption);
    return problem.isEmpty() ? answerDialog(caption, path) : problem;
}

bool DrivenWindow::opened(WindowButton button, const QString &caption)
{
    press(button);
    return QTest::qWaitFor(
        [&] {
            return !m_desktop->xdotool({"search", "--onlyvisible", "--name", caption}).isEmpty();
        },
        kDialogMs);
}

// Names the file to the dialog, or presses the key that the question whether to replace a file,
// which has its caption. Keys can get lost: a list of completions takes a Return for itself, and a
// window that has just come may miss what is pressed. So the caller tries again.
bool DrivenWindow::answered(const QString &caption, const QString &dialog, const QString &path)
{
    const auto windows = [&] {
        return m_desktop->xdotool({"search", "--onlyvisible", "--name", caption})
            .split('\n', Qt::SkipEmptyParts);
    };
    const QStringList before = windows();
    QStringList questions = before;
    questions.removeAll(dialog);
    if (!questions.isEmpty()) {
        m_desktop->xdotool({"windowfocus", "--sync", questions[0], "key", "alt+y"});
    } else if (!before.isEmpty()) {
        m_desktop->xdotool({"windowfocus", "--sync", dialog, "key", "End", "shift+Home"});
        m_desktop->type(dialogPath(path));
        m_desktop->press({"Return"});
    }
    static_cast<void>(QTest::qWaitFor([&] { return windows() != before; }, kDialogMs));
    return windows().isEmpty();
}

QString DrivenWindow::close()
{
    m_desktop->focusWindow(kTitle);
    m_desktop->press({"Escape"});
    return waitForEnd();
}

QString DrivenWindow::waitForEnd()
{
    if (!m_program.waitForFinished(kStepMs))
        return "The program does not end.";
    if (m_program.exitStatus() != QProcess::NormalExit || m_program.exitCode() != 0)
        return QString("The program ended with %1: ").arg(m_program.exitCode()) +
               QString::fromLocal8Bit(m_program.readAllStandardError());
    return QString::fromLocal8Bit(m_program.readAllStandardError());
}
