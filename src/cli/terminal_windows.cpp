#include "cli/terminal.h"

#include <windows.h>

namespace
{

// A console that takes escape sequences, which is asked for here; NUL and pipes are none. One that
// cannot is treated like a file: plain lines, no colour.
bool isTerminal(DWORD which)
{
    const HANDLE handle = GetStdHandle(which);
    DWORD mode = 0;
    // FALSE: no console, or one that refuses.
    return handle != INVALID_HANDLE_VALUE && GetConsoleMode(handle, &mode) != FALSE &&
           SetConsoleMode(handle, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != FALSE;
}

} // namespace

bool standardErrorIsTerminal()
{
    return isTerminal(STD_ERROR_HANDLE);
}

bool standardOutputIsTerminal()
{
    return isTerminal(STD_OUTPUT_HANDLE);
}

// Consoles start in the code page of DOS, but the program's texts are in the system's.
// No path names what another program has opened.
bool isStandardOutput(const char * /*path*/)
{
    return false;
}

ConsoleCodePage::ConsoleCodePage() : m_old(GetConsoleOutputCP())
{
    SetConsoleOutputCP(GetACP());
}

ConsoleCodePage::~ConsoleCodePage()
{
    SetConsoleOutputCP(m_old);
}
