#pragma once

#include "platform/Failure.h"

#include <functional>
#include <string>

namespace rv52::test {

using Act = std::function<void()>;

// What is wrong, in the words that the user reads; empty when nothing is.
inline std::string FailureOf(const Act& act) {
    try {
        act();
    } catch (const Failure& failure) {
        return failure.what();
    }
    return {};
}

}  // namespace rv52::test
