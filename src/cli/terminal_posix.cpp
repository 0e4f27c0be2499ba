#include "cli/terminal.h"

#include <sys/stat.h>
#include <unistd.h>

bool standardErrorIsTerminal()
{
    return isatty(STDERR_FILENO) == 1;
}

bool standardOutputIsTerminal()
{
    return isatty(STDOUT_FILENO) == 1;
}

bool isStandardOutput(const char *path)
{
    struct stat named = {};
    struct stat output = {};
    return ::stat(path, &named) == 0 && ::fstat(STDOUT_FILENO, &output) == 0 &&
           named.st_dev == output.st_dev && named.st_ino == output.st_ino;
}

ConsoleCodePage::ConsoleCodePage() = default;

ConsoleCodePage::~ConsoleCodePage() = default;
