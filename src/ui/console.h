// The log view that the tabs share: a steel-blue, read-only text area that follows its newest line,
// also while it changes its size, and forgets its oldest ones when there are thousands.
//
// Thread: GUI thread only.
#pragma once

#include <QTextEdit>

class Console : public QTextEdit
{
public:
    explicit Console(QWidget *parent);
};

// Appends `text` as a paragraph of its own and scrolls to it. Text that holds markup ("<hr><br>", a
// coloured span) is shown as rich text. Every log line of the user interface passes here.
void appendLog(Console *console, const QString &text);
