#include "simulator/VirtualLine.h"

#include "platform/Failure.h"
#include "platform/Line.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace rv52 {

namespace {

constexpr Wire::Clock kTick{1};
constexpr Wire::Clock kByteTime{std::chrono::nanoseconds(std::chrono::seconds(SerialSettings::kBitsPerByte)) /
                                SerialSettings::kBitsPerSecond};

}  // namespace

VirtualLine::VirtualLine(Peer& peer) : wire_(peer, kByteTime) {}

void VirtualLine::Open(int commPort) {
    if (open_) throw std::logic_error("the line is already open");
    TakeArrivals();
    if (opensToFail_ > 0 || !present_) {
        ++failedOpens_;
        if (opensToFail_ == 0) throw PortFailure("There is no such port.");
        --opensToFail_;
        throw PortFailure(openFailure_);
    }
    open_ = true;
    opens_.push_back(commPort);
}

void VirtualLine::Close() noexcept {
    if (!open_) return;
    open_ = false;
    ++closes_;
    waiting_.clear();
    raised_.clear();
    wire_.ClosePort(now_);
}

void VirtualLine::Discard() {
    TakeArrivals();
    RequireOpen();
    waiting_.clear();
}

std::uint8_t VirtualLine::ReadByte() {
    RequireOpen();
    if (waiting_.empty()) throw std::logic_error("no byte is waiting");
    const auto byte = waiting_.front();
    waiting_.pop_front();
    return byte;
}

void VirtualLine::SendByte(std::uint8_t byte) {
    TakeArrivals();
    RequireOpen();
    trace_.push_back({Direction::ToModule, byte, now_});
    wire_.Send(byte, now_);
}

void VirtualLine::Yield() {
    TakeArrivals();
    ServeEvents();
}

int VirtualLine::WaitForBytes(int count, Clock deadline, Yielding yielding) {
    for (;;) {
        TakeArrivals();
        RequireOpen();
        const int waiting = static_cast<int>(waiting_.size());
        if (waiting >= count) return waiting;
        if (now_ >= deadline) {
            now_ = std::max(now_, deadline + kTick);
            return waiting;
        }
        const auto before = now_;
        if (yielding == Yielding::Yes) ServeEvents();
        RequireOpen();
        // An event, or a box that the user left open, may have taken its time: then look again first.
        if (now_ == before) PassTime(deadline, yielding);
    }
}

void VirtualLine::WaitFor(std::chrono::milliseconds duration) {
    pauses_.push_back(duration);
    const auto end = now_ + duration;
    Yield();
    while (now_ < end) {
        PassTime(end, Yielding::Yes);
        Yield();
    }
}

void VirtualLine::Raise(LineCondition condition) {
    if (open_) raised_.insert(condition);
}

void VirtualLine::Advance(Clock duration) {
    now_ += duration;
    TakeArrivals();
}

void VirtualLine::HangUp() {
    Close();
    present_ = false;
}

void VirtualLine::FailOpens(std::string text, int times) {
    openFailure_ = std::move(text);
    opensToFail_ = times;
}

void VirtualLine::ForgetHistory() {
    trace_.clear();
    opens_.clear();
    pauses_.clear();
    failedOpens_ = closes_ = 0;
}

void VirtualLine::RequireOpen() const {
    if (!present_) throw PortFailure("The port went away.");
    if (!open_) throw PortFailure("The port is not open.");
}

void VirtualLine::TakeArrivals() {
    while (const auto arrival = wire_.TakeArrival(now_)) {
        if (arrival->IsHangUp()) {
            HangUp();
            continue;
        }
        trace_.push_back({Direction::ToPc, *arrival->byte, arrival->time});
        lastArrival_ = arrival->time;
        if (open_) waiting_.push_back(*arrival->byte);
    }
}

void VirtualLine::ServeEvents() {
    if (onYield_) onYield_();
    while (!events_.empty() && events_.begin()->first <= now_) {
        const auto event = events_.extract(events_.begin());
        event.mapped()();
    }
    DeliverConditions();
}

void VirtualLine::DeliverConditions() {
    for (const auto condition : std::exchange(raised_, {}))
        if (onCondition_) onCondition_(condition);
}

void VirtualLine::PassTime(Clock latest, Yielding yielding) {
    auto next = std::max(latest, now_);
    if (const auto arrival = wire_.NextArrival()) next = std::min(next, *arrival);
    if (yielding == Yielding::Yes && !events_.empty()) next = std::min(next, events_.begin()->first);
    now_ = std::max(next, now_);
}

}  // namespace rv52
