#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

namespace rv52 {

enum class Direction { ToModule, ToPc };

// A byte with the moment at which the PC handed it over or could first take it.
struct TracedByte {
    Direction direction;
    std::uint8_t byte;
    std::chrono::nanoseconds time;
};

// One byte as ">15" (to the module) or "<06" (to the PC), hexadecimal.
std::string ToText(const TracedByte& traced);
// All bytes so, in order, single blanks between them.
std::string ToText(const std::vector<TracedByte>& trace);

}  // namespace rv52
