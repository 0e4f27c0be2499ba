// The program with a user inside: runs it as its main function does and, once the window stands,
// carries out the plan named in GBDRIVER_TEST_PLAN. What it saw goes to the standard output.
//
//   look               reports title, tabs, style, some texts, icon, scaling, and closes the window
//   close-while-erasing  flashes the file GBDRIVER_TEST_FILE and closes the window meanwhile
#include "app/application.h"
#include "file_dialog_answer.h"
#include "ui/console.h"
#include "ui/guarded_job.h"
#include "ui/main_tab.h"

#include <QApplication>
#include <QDialog>
#include <QIcon>
#include <QPushButton>
#include <QStyle>
#include <QTabWidget>
#include <QTextStream>
#include <QTimer>

#include <algorithm>
#include <memory>

namespace
{
void say(const QString &line)
{
    QTextStream(stdout) << line << "\n";
}

QWidget *window()
{
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (widget->findChild<MainTab *>() != nullptr)
            return widget;
    }
    return nullptr;
}

QString iconWidths(const QIcon &icon)
{
    QList<QSize> sizes = icon.availableSizes();
    std::sort(sizes.begin(), sizes.end(),
              [](const QSize &a, const QSize &b) { return a.width() < b.width(); });
    QStringList widths;
    for (const QSize &size : sizes)
        widths << QString::number(size.width());
    return widths.join(' ');
}

void look(QWidget *dialog)
{
    const auto *tabs = dialog->findChild<QTabWidget *>();
    const auto *tab = dialog->findChild<MainTab *>();
    say("title: " + dialog->windowTitle());
    for (int i = 0; i < tabs->count(); ++i)
        say("tab: " + tabs->tabText(i));
    say("style: " + QApplication::style()->objectName());
    say("dump: " + tab->dumpButton->text());
    say("desktop entry: " + QGuiApplication::desktopFileName());
    say("icon: " + iconWidths(dialog->windowIcon()));
    say(QString("scale: %1").arg(dialog->devicePixelRatioF()));
    say(QString("icon's pixels: %1").arg(dialog->windowIcon().pixmap(16).width()));
    say("log: " + tab->console->toPlainText());
    dialog->close();
}

// Closes the window as soon as the worker waits for the chip.
void closeWhileErasing(QWidget *dialog)
{
    auto *tab = dialog->findChild<MainTab *>();
    tab->infoButton->click();
    tab->guarded->guardsWrites = false; // the erase comes at once
    {
        FileDialogAnswer answer(qEnvironmentVariable("GBDRIVER_TEST_FILE"));
        tab->flashButton->click();
    }
    auto *poll = new QTimer(dialog);
    QObject::connect(poll, &QTimer::timeout, dialog, [=] {
        if (!tab->console->toPlainText().contains("Start erase flash chip..."))
            return;
        poll->stop();
        dialog->close();
        say(dialog->isVisible() ? "window: waits" : "window: closed at once");
    });
    QObject::connect(qApp, &QApplication::aboutToQuit, dialog,
                     [=] { say("log: " + tab->console->toPlainText()); });
    poll->start(20);
}

void drive()
{
    QWidget *dialog = window();
    if (dialog == nullptr || !dialog->isVisible()) {
        QTimer::singleShot(20, qApp, drive);
        return;
    }
    if (qEnvironmentVariable("GBDRIVER_TEST_PLAN") == "look")
        look(dialog);
    else
        closeWhileErasing(dialog);
}

void driveWhenStarted()
{
    QTimer::singleShot(0, qApp, drive);
}
} // namespace

// Called by the constructor of the application object, which startApplication() makes.
Q_COREAPP_STARTUP_FUNCTION(driveWhenStarted)

int main(int argc, char **argv)
{
    return startApplication(argc, argv);
}
