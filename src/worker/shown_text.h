// Foreign text on its way to anybody's eyes: the title of a cartridge, the label of a drive, a file
// name, what a script prints. A terminal takes some characters for commands, and others turn the
// order of the line around them.
//
// Thread: pure functions; any thread.
#pragma once

#include <QString>

// The text with every control character but tabs and ends of lines written as \x1B, and every one
// that changes the direction of writing as \u202E. What is no text (half of a surrogate pair)
// becomes U+FFFD. A carriage return alone would let a line be written over; it ends the line.
QString shownText(const QString &foreign);

// The same for what is a part of one line: tabs and ends of lines are written as \x0A too.
QString shownValue(const QString &foreign);
