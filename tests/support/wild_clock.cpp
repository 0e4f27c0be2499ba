// A wall clock to be preloaded into a program: it begins in the year 2030 and goes back by
// WILD_CLOCK_STEP seconds whenever anybody looks at it. Clocks that nobody can set are left alone.
// Whoever waited for a time of this clock would wait for years.
#include <atomic>
#include <cstdlib>
#include <ctime>

#include <dlfcn.h>
#include <sys/time.h>

namespace
{

constexpr time_t kBegin = 1906545600; // 2030-06-01 12:00:00 UTC

time_t wallClock()
{
    static std::atomic<time_t> looks{0};
    const char *step = std::getenv("WILD_CLOCK_STEP");
    return kBegin - looks++ * (step == nullptr ? 0 : std::atol(step));
}

} // namespace

extern "C" {

int clock_gettime(clockid_t clock, timespec *result)
{
    using Function = int (*)(clockid_t, timespec *);
    static const auto real = reinterpret_cast<Function>(dlsym(RTLD_NEXT, "clock_gettime"));
    if (clock != CLOCK_REALTIME && clock != CLOCK_REALTIME_COARSE)
        return real(clock, result);
    *result = {wallClock(), 0};
    return 0;
}

int gettimeofday(timeval *result, void * /*zone*/)
{
    *result = {wallClock(), 0};
    return 0;
}

time_t time(time_t *result)
{
    const time_t now = wallClock();
    if (result != nullptr)
        *result = now;
    return now;
}

} // extern "C"
