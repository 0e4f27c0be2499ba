#include "app/end_signals.h"

// A window has no console; the end of a session is SessionEnd's.
struct EndSignals::Watch {
};

EndSignals::EndSignals(std::function<void()> /*end*/) {}

EndSignals::~EndSignals() = default;
