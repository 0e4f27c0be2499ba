#include "script/fatal_assertion.h"

#include <assert.h>
#include <stdlib.h>

void failAssertion(const char *expression, const char *file, unsigned line,
                   const char * /*function*/)
{
    _assert(expression, file, line);
    abort();
}
