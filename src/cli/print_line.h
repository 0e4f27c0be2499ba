// A line of text on its way out of the program.
//
// Thread: any; one at a time for each stream.
#pragma once

#include <QByteArray>
#include <QString>

#include <cstdio>

// Writes the bytes and one end of a line, and flushes the stream.
// Returns: false if they could not be written; errno says why, or is 0 where the system does not.
bool writeLine(std::FILE *stream, const QByteArray &line);

// Prints the text as shownText() has it, in the system's encoding, and one end of a line; `color`
// is a terminal's code to put before it, empty for none. The stream is flushed.
// Returns: false if it could not be written; errno says why.
bool printLine(std::FILE *stream, const QString &text, const char *color = "");
