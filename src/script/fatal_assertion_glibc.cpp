#include "script/fatal_assertion.h"

#include <cassert>

void failAssertion(const char *expression, const char *file, unsigned line, const char *function)
{
    __assert_fail(expression, file, line, function);
}
