#pragma once

#include <chrono>
#include <optional>

namespace rv52 {

struct FaultKind;

// How a fault is to strike; what is left open, the kind or the seed decides.
struct FaultDetails {
    std::optional<std::chrono::milliseconds> duration = std::nullopt;
    std::optional<int> address = std::nullopt;    // of the EEPROM
    std::optional<int> character = std::nullopt;  // of an identification, from 1; the last for one beyond
    std::optional<int> bit = std::nullopt;        // from 0, the lowest
};

// One fault as it is asked for. Its opportunities (the moments at which it could strike) are counted from 1.
struct FaultRequest {
    const FaultKind* kind = nullptr;
    // Only the kth opportunity; for a lasting fault, the kth and everything after it. Unset: every one.
    std::optional<long> k = std::nullopt;
    FaultDetails details = {};
};

}  // namespace rv52
