#include "cli/interrupt.h"

#include <csignal>

namespace
{

volatile std::sig_atomic_t interrupted = 0;

extern "C" void onInterrupt(int signal)
{
    interrupted = 1;
    std::signal(signal, SIG_DFL);
}

} // namespace

void watchForInterrupt()
{
    interrupted = 0;
    for (const int signal : stopSignals())
        std::signal(signal, onInterrupt);
    for (const int signal : ignoredSignals())
        std::signal(signal, SIG_IGN);
}

bool wasInterrupted()
{
    return interrupted != 0;
}
