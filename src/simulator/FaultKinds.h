#pragma once

#include "simulator/FaultRequest.h"
#include "simulator/ModuleStep.h"

#include <algorithm>
#include <random>
#include <span>
#include <string_view>

namespace rv52 {

enum class FaultDetail { Duration, Address, Character, Bit };

// One kind of fault. To add one, add its row to the table in FaultKinds.cpp.
struct FaultKind {
    using Random = std::mt19937_64;
    // How it strikes this time.
    struct Strike {
        int opportunity;  // of this step, from 0
        const FaultDetails& details;
        Random& random;
    };

    std::string_view name;
    std::string_view effect;  // for people: what it does, and what its opportunities are
    bool lasting;             // what it began it goes on with
    int (*opportunities)(const ModuleStep& step);
    void (*strike)(ModuleStep& step, Strike strike);
    // What may be asked of it; what is not has a default.
    std::span<const FaultDetail> details = {};

    bool Takes(FaultDetail detail) const { return std::ranges::find(details, detail) != details.end(); }
};

std::span<const FaultKind> FaultKinds();

// The kind of this name. Throws std::invalid_argument with one line that tells which there are.
const FaultKind& FaultNamed(std::string_view name);

}  // namespace rv52
