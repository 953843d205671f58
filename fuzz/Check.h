#pragma once

#include <cstdio>
#include <cstdlib>

namespace fuzz {

/// Ends the run when something that must hold does not. The fuzzer then keeps the input.
inline void check(bool holds, const char* what)
{
    if (holds)
        return;
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
}

}  // namespace fuzz
