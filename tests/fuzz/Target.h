#pragma once

#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace rv52::fuzz {

// What a target does with one input; each target program has its own. Whatever it may not do, it ends by
// Require, or the sanitizers end it.
void Target(std::string_view input);

inline void Require(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
}

}  // namespace rv52::fuzz
