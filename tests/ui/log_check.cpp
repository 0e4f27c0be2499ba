#include "log_check.h"

#include "worker/famicom_thread.h"

#include <QPushButton>

namespace
{
// How many of the five actions can be pressed.
int enabledActions(const MainTab &tab)
{
    int count = 0;
    for (const QPushButton *button :
         {tab.infoButton, tab.dumpButton, tab.readRamButton, tab.flashButton, tab.writeRamButton})
        count += button->isEnabled() ? 1 : 0;
    return count;
}
} // namespace

QStringList greetingLines()
{
    return {"Velora Driver Series for GB/GBC/GBA 3.0 started.",
            "Support all functions, need <span style=\"color: #ffcc00;\">QDX_PCB02_FW303</span> "
            "firmware.",
            "To dump GB/GBC cartridge,please switch power to 5V.",
            "To dump GBA cartridge,please switch power to 3.3V.",
            "Part of homebrew GB/GBC flash cart need 3.3V power.",
            "\r\n"};
}

QString plainLog(const QStringList &lines)
{
    Console console(nullptr);
    for (const QString &line : lines)
        appendLog(&console, line);
    return console.toPlainText();
}

QString richLog(const QStringList &lines)
{
    Console console(nullptr);
    for (const QString &line : lines)
        appendLog(&console, line);
    return console.toHtml();
}

bool isIdle(const MainTab &tab)
{
    return !tab.worker->isRunning() && enabledActions(tab) == 5 && !tab.cancelButton->isEnabled();
}

bool isBusy(const MainTab &tab)
{
    return tab.worker->isRunning() && enabledActions(tab) == 0 && tab.cancelButton->isEnabled();
}
