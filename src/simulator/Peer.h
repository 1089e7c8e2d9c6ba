#pragma once

#include <chrono>
#include <cstdint>
#include <vector>

namespace rv52 {

// What the far end of the line does about one byte that it received.
struct PeerAnswer {
    struct TimedByte {
        std::uint8_t byte = 0;
        // Silence before the byte, beyond the time that it takes on the wire.
        std::chrono::nanoseconds delay{0};

        bool operator==(const TimedByte&) const = default;
    };

    std::vector<TimedByte> bytes;
    // After these bytes the line is gone.
    bool hangUp = false;
    // What the peer had not sent yet, of earlier answers too, never comes; then come these bytes.
    bool powerLost = false;
};

// The far end of the line: a byte comes in, bytes come back. A peer that stands before another one hands on
// all that it is told, else the other's clock stands still and it knows of no closing.
class Peer {
 public:
    using Clock = std::chrono::nanoseconds;

    virtual ~Peer() = default;

    virtual PeerAnswer Receive(std::uint8_t byte) = 0;
    // It is this late by the clock of the wire, which does not go back. Told before each of the others.
    virtual void PassTime(Clock) {}
    // The PC has closed the port, or lost it; until it is open again nobody listens.
    virtual void PortClosed() {}
};

}  // namespace rv52
