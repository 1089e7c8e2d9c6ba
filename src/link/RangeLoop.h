#pragma once

#include "module/EepromMap.h"

#include <functional>
#include <span>

namespace rv52 {

struct Session;

// What reading, programming and verifying do differently on their way over the ranges of a transfer.
// Whatever returns false ends the transfer.
struct RangeLoop {
    std::function<bool()> addressed;      // after the set address of each range
    std::function<bool(int index)> move;  // moves the byte of this buffer index
    std::function<bool()> settle;         // after each byte that was moved and counted
    std::function<void()> count = [] {};  // one byte more
};

// Addresses each range and moves its bytes in ascending order. True when all were moved.
bool RunRanges(Session& session, std::span<const TransferRange> ranges, const RangeLoop& loop);

// After a byte read from the module: lets the window live, then tells whether to go on, which Escape and a
// failed read do not.
bool GoOnReading(Session& session);

}  // namespace rv52
