// What a fuzzer asserts.
#pragma once

#include <cstdio>
#include <cstdlib>

// Ends the program with the rule's words unless `condition` holds; the fuzzer then keeps the input.
inline void require(bool condition, const char *rule)
{
    if (condition)
        return;
    std::fprintf(stderr, "broken rule: %s\n", rule);
    std::abort();
}
