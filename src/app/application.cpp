#include "app/application.h"

#include "app/end_signals.h"
#include "app/high_dpi.h"
#include "app/session_end.h"
#include "app/tab_dialog.h"
#include "app/translation.h"
#include "device/device_link.h"
#include "virtual/backend_choice.h"

#include <QApplication>
#include <QDir>
#include <QIcon>
#include <QTranslator>

#include <cstdio>
#include <cstdlib>

using namespace virtual_reader;

// The resource stands in a static library, which the linker would leave out. Outside of every
// namespace, as the macro wants it.
static void initIconResource()
{
    Q_INIT_RESOURCE(icon);
}

namespace
{
// The file named on the command line; the current folder without one.
QString fileArgument(int argc, char **argv)
{
    return argc >= 2 ? QString::fromUtf8(argv[1]) : QStringLiteral(".");
}

// In every size that the build drew it in.
QIcon programIcon()
{
    initIconResource();
    QIcon icon;
    for (const QFileInfo &picture : QDir(QStringLiteral(":/icon")).entryInfoList())
        icon.addFile(picture.filePath());
    return icon;
}

int runWindow(int &argc, char **argv)
{
    askForHighDpi();
    QApplication application(argc, argv);
    QApplication::setStyle(QStringLiteral("fusion"));
    QApplication::setWindowIcon(programIcon());
    // A desktop finds name and icon of the window's entry by it.
    QApplication::setDesktopFileName(QStringLiteral("gbdriver"));
    const QString fileName = fileArgument(argc, argv);
    QTranslator translator;
    installTranslation(QCoreApplication::applicationDirPath(), &translator);
    TabDialog dialog(fileName);
    const EndSignals endSignals([&dialog] { dialog.endProgram(); });
    // While a job runs, the window stays, and so does the session; Qt 5 would see to it, Qt 6 not.
    const SessionEnd sessionEnd([&dialog] {
        QApplication::closeAllWindows();
        return !dialog.isVisible();
    });
    dialog.show();
    const int code = QApplication::exec();
    if (dialog.hasLeftJob())
        std::_Exit(code); // a thread still uses what would be torn down
    return code;
}
} // namespace

int startApplication(int &argc, char **argv)
{
    // Outlives the window, whose worker may use the drive to the very end.
    const ChosenBackend chosen = chooseDriveBackend(qgetenv(kVirtualReaderVariable).constData());
    if (chosen.backend() == nullptr) {
        std::fprintf(stderr, "gbdriver: %s\n", chosen.error.c_str());
        return 1;
    }
    setDriveBackend(chosen.backend());
    return runWindow(argc, argv);
}
