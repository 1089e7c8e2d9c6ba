#pragma once

#include "app/AppState.h"
#include "link/WireSteps.h"
#include "module/EepromMap.h"

#include <functional>
#include <span>

namespace rv52 {

struct Session;

// What reading, programming and verifying do differently on their way over the ranges of a transfer.
// Whatever returns false ends the transfer.
struct RangeLoop {
    LinkWork work = LinkWork::None;
    std::function<bool()> addressed;      // after the set address of each range
    std::function<bool(int index)> move;  // moves the byte of this buffer index
    std::function<bool()> settle;         // after each byte that was moved and counted
    std::function<void()> count = [] {};  // one byte more
};

// Addresses each range and moves its bytes in ascending order. True when all were moved.
bool RunRanges(Session& session, std::span<const TransferRange> ranges, const RangeLoop& loop);

// From the module into the buffer. Escape ends it.
RangeLoop ReadLoop(Session& session);

// From the buffer into the module, as long as every byte is acknowledged, after this many echoes.
RangeLoop WriteLoop(Session& session, int echoes, const char* timeoutText = kReplyTimeout);

// Compares what the module holds with the buffer, counting VerifyErrors from 0. Escape ends it.
class Verification {
 public:
    explicit Verification(Session& session);

    RangeLoop Loop();
    // A verify that could not look, or looked at a place that the module never confirmed, has failed.
    void Judge(bool complete);

 private:
    Session& session_;
    bool addressed_ = true;
};

}  // namespace rv52
