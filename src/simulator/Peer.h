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
};

// The far end of the line: a byte comes in, bytes come back.
class Peer {
 public:
    virtual ~Peer() = default;

    virtual PeerAnswer Receive(std::uint8_t byte) = 0;
};

}  // namespace rv52
