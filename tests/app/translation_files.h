// Compiled translation files for tests, made with the translators' own tool.
#pragma once

#include <QString>
#include <QStringList>

// Compiles a translation file that turns some texts of the program into `mark` + text: window title
// and tabs, the buttons, and the log lines of a missing script.
// Returns: empty, or what went wrong (the tool is missing, or refuses).
QString makeTranslation(const QString &path, const QString &mark);
