#include "cli/interrupt.h"

#include <csignal>

const std::vector<int> &stopSignals()
{
    static const std::vector<int> signals = {SIGINT, SIGTERM, SIGHUP};
    return signals;
}

const std::vector<int> &ignoredSignals()
{
    static const std::vector<int> signals = {SIGPIPE};
    return signals;
}
