#include "cli/terminal.h"

#include <io.h>
#include <stdio.h>

bool standardErrorIsTerminal()
{
    return _isatty(_fileno(stderr)) != 0;
}
