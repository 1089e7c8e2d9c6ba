#pragma once

#include "simulator/FaultRequest.h"
#include "simulator/ModuleStep.h"

#include <cstdint>
#include <random>
#include <string_view>
#include <vector>

namespace rv52 {

// The faults of one module. What they do depends only on the requests, their order, the seed, and the bytes
// and closings of the port as the module meets them, so any failure seen can be had again. The seed chooses
// bits, bytes and addresses. The clock decides only which bytes come while the module has no power.
class Faults {
 public:
    Faults() = default;
    Faults(const std::vector<FaultRequest>& requests, std::uint64_t seed);
    // From texts as ParseFault takes them.
    Faults(std::initializer_list<std::string_view> requests, std::uint64_t seed);

    // Changes what the module is about to do: the first fault first, each seeing what those before it left.
    void Shape(ModuleStep& step);

 private:
    struct Active {
        FaultRequest request;
        std::mt19937_64 random;
        long opportunities = 0;
    };

    void Add(const FaultRequest& request, std::uint64_t seed);

    std::vector<Active> active_;
};

}  // namespace rv52
