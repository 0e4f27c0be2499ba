// What the program's output goes to.
#pragma once

bool standardErrorIsTerminal();

bool standardOutputIsTerminal();

// Whether what is written to `path` goes where standard output goes.
bool isStandardOutput(const char *path);

// As long as it lives a console shows the system's 8-bit texts as they are.
class ConsoleCodePage
{
public:
    ConsoleCodePage();
    ~ConsoleCodePage();
    ConsoleCodePage(const ConsoleCodePage &) = delete;
    ConsoleCodePage &operator=(const ConsoleCodePage &) = delete;

private:
    [[maybe_unused]] unsigned m_old = 0;
};
