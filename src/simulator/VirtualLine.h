#pragma once

#include "platform/Line.h"
#include "simulator/Wire.h"
#include "simulator/WireTrace.h"

#include <deque>
#include <limits>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace rv52 {

// The serial line to a peer on virtual time: a second of waiting takes no time at all, and every moment is
// exact. Each byte takes 10 bits at 56000 bit/s either way. Time passes only inside WaitForBytes and WaitFor
// (and Advance); a wait that is in vain ends one nanosecond after its deadline, so a byte that arrives at the
// very deadline is in time. Bytes that arrive while the line is closed are lost, as on a real port.
class VirtualLine : public Line {
 public:
    explicit VirtualLine(Peer& peer);

    bool IsOpen() const override { return open_; }
    void Open(int commPort) override;
    void Close() noexcept override;
    void EndHold() noexcept override { ++holdsEnded_; }
    void Discard() override;
    std::uint8_t ReadByte() override;
    void SendByte(std::uint8_t byte) override;
    Clock Now() const override { return now_; }
    Clock LastArrival() const override { return lastArrival_; }
    void Yield() override;
    int WaitForBytes(int count, Clock deadline, Yielding yielding) override;
    void WaitFor(std::chrono::milliseconds duration) override;
    void OnCondition(ConditionHandler handler) override { onCondition_ = std::move(handler); }

    // What happens to the program.

    // Runs at this moment, or, where the program does not yield then, at its next yield.
    void At(Clock time, std::function<void()> event) { events_.emplace(time, std::move(event)); }
    // Runs at every yield, before events and conditions.
    void OnYield(std::function<void()> hook) { onYield_ = std::move(hook); }
    // Delivered at the next yield; conditions of a closed line are forgotten.
    void Raise(LineCondition condition);
    // Time passes while the program does something else than yield.
    void Advance(Clock duration);
    // A byte that nobody asked for.
    void Inject(std::uint8_t byte) { wire_.Inject(byte, now_); }
    // The device goes away, as a peer's hang-up does it: the line is closed, opening it fails until PlugIn.
    void HangUp();
    void PlugIn() { present_ = true; }
    bool IsPresent() const { return present_; }
    // The next opens fail with this text.
    void FailOpens(std::string text, int times = std::numeric_limits<int>::max());

    // What the program did.

    const std::vector<TracedByte>& Trace() const { return trace_; }
    std::string TraceText() const { return ToText(trace_); }
    // Forgets all of this, for runs that would otherwise outgrow the memory.
    void ForgetHistory();
    // The port of every successful open, in order.
    const std::vector<int>& Opens() const { return opens_; }
    // Attempts that failed.
    int FailedOpens() const { return failedOpens_; }
    // Changes from open to closed, a hang-up being one.
    int Closes() const { return closes_; }
    int HoldsEnded() const { return holdsEnded_; }
    // Every WaitFor in order.
    const std::vector<std::chrono::milliseconds>& Pauses() const { return pauses_; }

 private:
    void RequireOpen() const;
    void TakeArrivals();
    void ServeEvents();
    void DeliverConditions();
    // Time passes until the next thing happens, at the latest until then.
    void PassTime(Clock latest, Yielding yielding);

    Wire wire_;
    Clock now_{0};
    Clock lastArrival_{0};
    bool open_ = false;
    bool present_ = true;
    std::deque<std::uint8_t> waiting_;

    std::multimap<Clock, std::function<void()>> events_;
    std::function<void()> onYield_;
    ConditionHandler onCondition_;
    std::set<LineCondition> raised_;
    std::string openFailure_;
    int opensToFail_ = 0;

    std::vector<TracedByte> trace_;
    std::vector<int> opens_;
    int failedOpens_ = 0;
    int closes_ = 0;
    int holdsEnded_ = 0;
    std::vector<std::chrono::milliseconds> pauses_;
};

}  // namespace rv52
