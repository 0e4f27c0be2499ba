// A line of text on its way out of the program.
//
// Thread: any; one at a time for each stream.
#pragma once

#include <QString>

#include <cstdio>

// Whether what fprintf() has put into the stream, `count` being its answer, has left the program.
bool wasWritten(std::FILE *stream, int count);

// Prints the text as shownText() has it, in the system's encoding, and one end of a line; `color`
// is a terminal's code to put before it, empty for none. The stream is flushed.
// Returns: false if it could not be written; errno says why.
bool printLine(std::FILE *stream, const QString &text, const char *color = "");
