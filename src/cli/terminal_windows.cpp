#include "cli/terminal.h"

#include <io.h>
#include <stdio.h>

bool standardErrorIsTerminal()
{
    return _isatty(_fileno(stderr)) != 0;
}

bool standardOutputIsTerminal()
{
    return _isatty(_fileno(stdout)) != 0;
}
