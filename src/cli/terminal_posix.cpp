#include "cli/terminal.h"

#include <unistd.h>

bool standardErrorIsTerminal()
{
    return isatty(STDERR_FILENO) == 1;
}

bool standardOutputIsTerminal()
{
    return isatty(STDOUT_FILENO) == 1;
}

ConsoleCodePage::ConsoleCodePage() = default;

ConsoleCodePage::~ConsoleCodePage() = default;
