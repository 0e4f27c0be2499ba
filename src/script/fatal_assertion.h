// Stops the program with the C runtime's assertion report, in every build type: a script that hands
// a native something else than its job would make the host write to a wild address.
#pragma once

// Reports the failed `expression` at `file` and `line` and ends the process.
[[noreturn]] void failAssertion(const char *expression, const char *file, unsigned line,
                                const char *function);
