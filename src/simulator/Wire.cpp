#include "simulator/Wire.h"

#include <algorithm>

namespace rv52 {

void Wire::Send(std::uint8_t byte, Clock now) {
    toModuleFree_ = std::max(now, toModuleFree_) + byteTime_;
    peer_.PassTime(toModuleFree_);
    const auto answer = peer_.Receive(byte);
    if (answer.powerLost) LosePower();
    toPcFree_ = std::max(toModuleFree_, toPcFree_);
    for (const auto& timed : answer.bytes) {
        toPcFree_ += timed.delay + byteTime_;
        arrivals_.push_back({toPcFree_, timed.byte});
    }
    if (answer.hangUp) arrivals_.push_back({toPcFree_, std::nullopt});
}

void Wire::ClosePort(Clock now) {
    peer_.PassTime(std::max(now, toModuleFree_));
    peer_.PortClosed();
}

// A byte that was half across is lost as well.
void Wire::LosePower() {
    std::erase_if(arrivals_, [this](const Arrival& arrival) {
        return !arrival.IsHangUp() && arrival.time > toModuleFree_;
    });
    toPcFree_ = arrivals_.empty() ? toModuleFree_ : arrivals_.back().time;
}

void Wire::Inject(std::uint8_t byte, Clock now) {
    toPcFree_ = std::max(now, toPcFree_) + byteTime_;
    arrivals_.push_back({toPcFree_, byte});
}

std::optional<Wire::Clock> Wire::NextArrival() const {
    if (arrivals_.empty()) return std::nullopt;
    return arrivals_.front().time;
}

std::optional<Wire::Arrival> Wire::TakeArrival(Clock now) {
    if (arrivals_.empty() || arrivals_.front().time > now) return std::nullopt;
    const auto arrival = arrivals_.front();
    arrivals_.pop_front();
    return arrival;
}

}  // namespace rv52
