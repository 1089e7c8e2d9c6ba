#pragma once

#include "simulator/Peer.h"

#include <deque>
#include <optional>

namespace rv52 {

// Two one-way lanes between the PC and a peer, on which every byte takes its time: the next byte of a lane
// starts when the last one has passed. Times are of any one clock that does not go back.
class Wire {
 public:
    using Clock = std::chrono::nanoseconds;

    // What reaches the PC: a byte, or the end of the line.
    struct Arrival {
        Clock time;
        std::optional<std::uint8_t> byte;

        bool IsHangUp() const { return !byte; }
    };

    Wire(Peer& peer, Clock byteTime) : peer_(peer), byteTime_(byteTime) {}

    // The PC puts a byte on the wire.
    void Send(std::uint8_t byte, Clock now);
    // The PC closes the port: the bytes sent before still reach the peer.
    void ClosePort(Clock now);
    // A byte that nobody asked for sets out towards the PC.
    void Inject(std::uint8_t byte, Clock now);

    // When the next arrival is, if one is under way.
    std::optional<Clock> NextArrival() const;
    // The next arrival, if its time has come.
    std::optional<Arrival> TakeArrival(Clock now);

 private:
    void LosePower();

    Peer& peer_;
    Clock byteTime_;
    Clock toModuleFree_{0};
    Clock toPcFree_{0};
    std::deque<Arrival> arrivals_;
};

}  // namespace rv52
