// Foreign text on its way to the window's log, which takes what looks like markup for markup: the
// title of a cartridge, the label of a drive, a path, what a script prints.
//
// Thread: pure function; any thread.
#pragma once

#include <QString>

// Markup that shows the very characters of `plain` (see shown_text.h for controls), line breaks
// among them, where white space is kept; for what puts it into a span of its own.
QString markupOf(const QString &plain);

// shownText() if it holds neither '<' nor '&', else markup that shows the very same characters,
// runs of spaces and line breaks among them.
QString logText(const QString &foreign);
