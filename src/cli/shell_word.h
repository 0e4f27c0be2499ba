// File names in commands that are printed for the user to paste.
//
// Thread: pure functions; any thread.
#pragma once

#include <QString>

// `text` as one word of a POSIX shell, whatever is in it: in single quotes, where nothing has a
// meaning; with control characters as $'...', which bash, ksh and zsh know.
QString posixWord(const QString &text);

// The same for the prompt of cmd, where a name between two "%" becomes the value of a variable even
// in quotes. No name on Windows holds a double quote.
QString cmdWord(const QString &text);

// For the shell of the system that the program runs on.
QString shellWord(const QString &text);
