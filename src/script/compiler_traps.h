// The compiler of the library that runs scripts takes some texts that are none, loses count of the
// places it computes in over them, and writes where it should not. This finds them before it sees
// them.
//
// Thread: as the machine.
#pragma once

#include <QByteArray>

struct CompilerTrap {
    const char *error; // what is wrong, for people; null: the compiler may see the text
    int line;          // where; from 1
    int column;        // from 1
};

// Follows the text as the compiler does, and ends where that reports an error. Inside of
// stepWithinLimits() it gives the machine up over what is nested too deeply.
CompilerTrap findCompilerTrap(const QByteArray &text);
