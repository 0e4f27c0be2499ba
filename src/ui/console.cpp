#include "ui/console.h"

#include <QCoreApplication>
#include <QFont>
#include <QPalette>
#include <QScrollBar>
#include <QTextCursor>
#include <QTextDocument>

#include <memory>

namespace
{
// The log is bounded: a script that prints in a loop would take all memory otherwise.
constexpr int kMostParagraphs = 5000;
constexpr int kKeptParagraphs = 4000;

// Many at once: to drop the first paragraph moves all others, which takes milliseconds.
void dropOldestParagraphs(QTextDocument *document)
{
    if (document->blockCount() <= kMostParagraphs)
        return;
    document->setMaximumBlockCount(kKeptParagraphs);
    document->setMaximumBlockCount(0); // no limit of the document's own from here on
}

// Whoever sees the newest line goes on seeing it when the view becomes lower or its lines are
// broken anew; whoever has scrolled up stays where he is.
void keepEndInView(QTextEdit *log)
{
    QScrollBar *bar = log->verticalScrollBar();
    auto seesEnd = std::make_shared<bool>(true);
    QObject::connect(bar, &QScrollBar::valueChanged, bar, [=](int value) {
        // The newest line is whole already when only the margin below it is cut.
        *seesEnd = value >= bar->maximum() - log->fontMetrics().lineSpacing();
    });
    QObject::connect(bar, &QScrollBar::rangeChanged, bar, [=](int, int maximum) {
        if (*seesEnd)
            bar->setValue(maximum);
    });
}
} // namespace

Console::Console(QWidget *parent) : QTextEdit(parent)
{
    setMinimumWidth(400);
    setReadOnly(true);

    QPalette colours;
    colours.setBrush(QPalette::Base, QBrush(QColor(112, 146, 190, 255)));
    setPalette(colours);

    QFont type(QStringLiteral("Courier"));
    type.setPointSize(9);
    setFont(type);

    setAccessibleName(QCoreApplication::translate("Console", "Log"));
    setAccessibleDescription(
        QCoreApplication::translate("Console", "What has happened; the newest line is the last"));
    keepEndInView(this);
}

void appendLog(Console *console, const QString &text)
{
    console->append(text);
    dropOldestParagraphs(console->document());
    QTextCursor cursor = console->textCursor();
    cursor.movePosition(QTextCursor::End, QTextCursor::MoveAnchor, 1);
    console->setTextCursor(cursor);
}
