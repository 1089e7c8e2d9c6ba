#pragma once

#include "simulator/ModuleStep.h"

#include <cstdint>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace rv52 {

struct FaultKind;

// One fault as it is asked for. Its opportunities (the moments at which it could strike) are counted from 1.
struct FaultRequest {
    const FaultKind* kind = nullptr;
    // Only the kth opportunity; for a lasting fault, the kth and everything after it. Unset: every one.
    std::optional<long> k;
};

// Reads "NAME" or "NAME=K". Throws std::invalid_argument with one line that tells what is wrong.
FaultRequest ParseFault(std::string_view text);

// A line for each fault: its name and what it does.
std::string DescribeFaults();

// The faults of one module. What they do depends only on the requests, their order, the seed and the bytes
// that the module has received, so any failure seen can be had again. The seed chooses bits and bytes.
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
