#include "log_check.h"

#include "ui/guarded_job.h"
#include "ui/settings.h"
#include "worker/famicom_thread.h"

#include <QComboBox>
#include <QPushButton>
#include <QRegularExpression>
#include <QTextBlock>
#include <QTextDocument>

#include <memory>

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

bool isRule(const QTextBlock &block)
{
    return block.blockFormat().hasProperty(QTextFormat::BlockTrailingHorizontalRulerWidth);
}

// The first block of a judgement; invalid if there is none.
QTextBlock firstJudgement(const QTextDocument &log)
{
    static const QRegularExpression kWord(
        "^(verified|consistent|unverified|unstable|suspicious|written|incomplete|failed|refused|"
        "stopped): ");
    QTextBlock block = log.begin();
    while (block.isValid() && !kWord.match(block.text()).hasMatch())
        block = block.next();
    return block;
}

// The last block of the rule that closes what begins with `block`.
QTextBlock endOfRule(QTextBlock block)
{
    while (block.isValid() && !isRule(block))
        block = block.next();
    return block.next();
}

void removeJudgements(QTextDocument *log)
{
    for (QTextBlock first = firstJudgement(*log); first.isValid(); first = firstJudgement(*log)) {
        const QTextBlock last = endOfRule(first);
        QTextCursor cursor(log);
        cursor.setPosition(first.position() - 1);
        cursor.setPosition(last.position() + last.length() - 1, QTextCursor::KeepAnchor);
        cursor.removeSelectedText();
    }
}
} // namespace

ShownLog logOf(const MainTab &tab)
{
    const std::unique_ptr<QTextDocument> log(tab.console->document()->clone());
    removeJudgements(log.get());
    return {log->toPlainText(), log->toHtml()};
}

QStringList judgementsOf(const MainTab &tab)
{
    QStringList lines;
    const QTextDocument *log = tab.console->document();
    QTextBlock block = firstJudgement(*log);
    for (; block.isValid(); block = block.next())
        if (!isRule(block) && !block.text().trimmed().isEmpty())
            lines << block.text();
    return lines;
}

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
    return !tab.worker->isRunning() && !tab.guarded->isBusy() && enabledActions(tab) == 5 &&
           !tab.cancelButton->isEnabled();
}

bool isBusy(const MainTab &tab)
{
    return tab.worker->isRunning() && enabledActions(tab) == 0 && tab.cancelButton->isEnabled();
}

QStringList deviceLines()
{
    return {"--Device information--", "Driver label: VIRTUAL", "Device firmware: QDX_PCB02_FW303",
            "\r\n"};
}

QStringList nothingFoundLines()
{
    return {"Can not auto detect cartridge information.",
            "Maybe no insert cart or it's a black cart.",
            "Also try:",
            " 1.Turn off anti-virus software.",
            " 2.Damaged or Dirty.",
            " 3.Switch correct volte on dump board.",
            " 4.Try again.",
            "<hr><br>"};
}

QStringList gbHeaderTraffic()
{
    return {"F0/02", "02/01", "DUMP 0+8192"};
}

QStringList gbaHeaderTraffic()
{
    return {"F0/03", "03/01", "03/06", "DUMP 0+8192"};
}

QStringList shownSettings(const Settings &settings)
{
    QStringList texts;
    for (const QComboBox *box : settings.findChildren<QComboBox *>())
        texts << box->currentText();
    return texts;
}
