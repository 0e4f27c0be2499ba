// The manual page gbdriver-cli(1), made from the tables of commands, options and exit codes.
// Pure; any thread.
#pragma once

#include <QString>

// In roff with the macros man(7). Plain ASCII.
QString manualPage();
