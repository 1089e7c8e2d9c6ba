#pragma once

#include "platform/Line.h"

#include <gtest/gtest.h>

namespace rv52::test {

// The line of commands that have no business with the module: any exchange on it fails the test.
class IdleLine : public Line {
 public:
    bool IsOpen() const override { return false; }
    void Open(int) override { ADD_FAILURE() << "the port was opened"; }
    void Close() noexcept override {}
    void EndHold() noexcept override {}
    void Discard() override { ADD_FAILURE() << "the line was used"; }
    std::uint8_t ReadByte() override {
        ADD_FAILURE() << "the line was read";
        return 0;
    }
    void SendByte(std::uint8_t) override { ADD_FAILURE() << "a byte was sent"; }
    Clock Now() const override { return {}; }
    Clock LastArrival() const override { return {}; }
    void Yield() override {}
    int WaitForBytes(int, Clock, Yielding) override { return 0; }
    void WaitFor(std::chrono::milliseconds) override {}
    void OnCondition(ConditionHandler) override {}
};

}  // namespace rv52::test
