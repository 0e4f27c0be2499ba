// A wall clock for programs that begins in the year 2030 and goes back at every look.
#pragma once

#include <QMap>
#include <QString>

// The variables of the environment that give a program such a clock. `step`: seconds that it goes
// back; with 0 it stands still.
inline QMap<QString, QString> wildClock(int step)
{
    return {{"LD_PRELOAD", WILD_CLOCK_LIBRARY},
            {"WILD_CLOCK_STEP", QString::number(step)},
            // The sanitizer wants to be the first library; the clock calls nothing of it.
            {"ASAN_OPTIONS", qEnvironmentVariable("ASAN_OPTIONS") + ":verify_asan_link_order=0"}};
}
