#include "script/fatal_assertion.h"

// Release builds define NDEBUG, and then the header does not declare the report.
#undef NDEBUG
#include <assert.h>

void failAssertion(const char *expression, const char *file, unsigned line, const char *function)
{
    __assert_fail(expression, file, line, function);
}
