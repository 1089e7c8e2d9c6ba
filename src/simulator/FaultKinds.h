#pragma once

#include "simulator/ModuleStep.h"

#include <random>
#include <span>
#include <string_view>

namespace rv52 {

// One kind of fault. To add one, add its row to the table in FaultKinds.cpp.
struct FaultKind {
    using Random = std::mt19937_64;

    std::string_view name;
    std::string_view effect;  // for people: what it does, and what its opportunities are
    bool lasting;             // what it began it goes on with
    int (*opportunities)(const ModuleStep& step);
    void (*strike)(ModuleStep& step, int opportunity, Random& random);  // opportunity of this step, from 0
};

std::span<const FaultKind> FaultKinds();

}  // namespace rv52
