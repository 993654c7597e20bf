#pragma once

#include <cstdio>
#include <cstdlib>

namespace tabulor::fuzz {

// What a fuzz target asserts beyond not crashing: a broken promise aborts, so that libFuzzer
// keeps the input that broke it as a crash.
inline void require(bool holds, const char* promise)
{
    if (holds)
        return;
    std::fprintf(stderr, "Broken promise: %s\n", promise);
    std::abort();
}

} // namespace tabulor::fuzz
