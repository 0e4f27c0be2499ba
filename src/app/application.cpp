#include "app/application.h"

#include "app/end_signals.h"
#include "app/high_dpi.h"
#include "app/tab_dialog.h"
#include "app/translation.h"
#include "device/device_link.h"
#include "virtual/backend_choice.h"

#include <QApplication>
#include <QTranslator>

#include <cstdio>
#include <cstdlib>

using namespace virtual_reader;

namespace
{
// The file named on the command line; the current folder without one.
QString fileArgument(int argc, char **argv)
{
    return argc >= 2 ? QString::fromUtf8(argv[1]) : QStringLiteral(".");
}

int runWindow(int &argc, char **argv)
{
    askForHighDpi();
    QApplication application(argc, argv);
    QApplication::setStyle(QStringLiteral("fusion"));
    const QString fileName = fileArgument(argc, argv);
    QTranslator translator;
    installTranslation(QCoreApplication::applicationDirPath(), &translator);
    TabDialog dialog(fileName);
    const EndSignals endSignals([&dialog] { dialog.endProgram(); });
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
