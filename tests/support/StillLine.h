#pragma once

#include "platform/Failure.h"
#include "platform/Line.h"

namespace rv52::test {

// The serial line of a test without a module: closed, and not to be used.
class StillLine : public Line {
 public:
    bool IsOpen() const override { return false; }
    void Open(int) override { throw PortFailure("no line in this test"); }
    void Close() noexcept override {}
    void Discard() override {}
    std::uint8_t ReadByte() override { throw PortFailure("no line in this test"); }
    void SendByte(std::uint8_t) override { throw PortFailure("no line in this test"); }
    Clock Now() const override { return {}; }
    void Pump() override {}
    int Await(int, Clock, Yielding) override { return 0; }
    void Pause(std::chrono::milliseconds) override {}
    void OnCondition(ConditionHandler) override {}
};

}  // namespace rv52::test
