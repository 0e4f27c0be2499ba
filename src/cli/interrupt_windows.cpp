#include "cli/interrupt.h"

#include <csignal>

const std::vector<int> &stopSignals()
{
    // SIGBREAK: Ctrl-Break and a console that is closed.
    static const std::vector<int> numbers = {SIGINT, SIGTERM, SIGBREAK};
    return numbers;
}

const std::vector<int> &ignoredSignals()
{
    static const std::vector<int> numbers;
    return numbers;
}
