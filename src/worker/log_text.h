// Foreign text on its way to the window's log, which takes what looks like markup for markup: the
// title of a cartridge, the label of a drive, a path, what a script prints.
//
// Thread: pure function; any thread.
#pragma once

#include <QString>

// The text as it is if it holds neither '<' nor '&', else as markup that shows the very same
// characters, runs of spaces and line breaks among them.
QString logText(const QString &foreign);
