#pragma once

#include "platform/Line.h"

#include <string>
#include <vector>

namespace rv52::bench {

// The serial line with as little around it as there can be: no toolkit, no window, no lock. What a transfer
// takes on it is what this machine's kernel takes to carry the bytes.
class BareLine : public Line {
 public:
    explicit BareLine(std::string device) : device_(std::move(device)) {}
    ~BareLine() override { Close(); }
    BareLine(const BareLine&) = delete;
    BareLine& operator=(const BareLine&) = delete;

    bool IsOpen() const override { return port_ >= 0; }
    void Open(int commPort) override;
    void Close() noexcept override;
    void EndHold() noexcept override {}
    void Discard() override;
    std::uint8_t ReadByte() override;
    void SendByte(std::uint8_t byte) override;
    Clock Now() const override;
    Clock LastArrival() const override { return lastArrival_; }
    void Yield() override {}
    int WaitForBytes(int count, Clock deadline, Yielding yielding) override;
    void WaitFor(std::chrono::milliseconds duration) override;
    void OnCondition(ConditionHandler) override {}

 private:
    void TakeWhatIsThere();

    std::string device_;
    int port_ = -1;
    std::vector<std::uint8_t> waiting_;
    Clock lastArrival_{0};
};

}  // namespace rv52::bench
