#include "cli/interrupt.h"

#include <csignal>

const std::vector<int> &stopSignals()
{
    static const std::vector<int> numbers = {SIGINT, SIGTERM, SIGHUP};
    return numbers;
}

const std::vector<int> &ignoredSignals()
{
    static const std::vector<int> numbers = {SIGPIPE};
    return numbers;
}
