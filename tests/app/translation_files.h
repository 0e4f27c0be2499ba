// Compiled translation files for tests. The build makes them with the translators' own tool, which
// runs where the build does, from marked.ts.in.
#pragma once

#include <QString>

// Puts a file at `path` that turns some texts of the program into "[" + `mark` + "]" + text: window
// title and tabs, buttons, and a log line of a missing script. A file that is there is replaced.
// `mark`: "chs" or "jpn".
// Returns: empty, or what went wrong.
QString addTranslation(const QString &path, const QString &mark);
