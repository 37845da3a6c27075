// SPDX-License-Identifier: MIT
#pragma once

#include <cstdio>
#include <cstdlib>

// What must hold whatever came in. Where it does not, the run ends and libFuzzer keeps the input.
inline void require(bool holds, const char *what)
{
    if (holds)
        return;
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
}
