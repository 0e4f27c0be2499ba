#include "ui/console.h"

#include <QFont>
#include <QPalette>
#include <QTextCursor>

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
}

void appendLog(Console *console, const QString &text)
{
    console->append(text);
    QTextCursor cursor = console->textCursor();
    cursor.movePosition(QTextCursor::End, QTextCursor::MoveAnchor, 1);
    console->setTextCursor(cursor);
}
