#pragma once

#include <chrono>
#include <cstdint>

namespace rv52 {

// How program and module speak over the wire, as numbers (the line itself is set by SerialSettings);
// docs/wire-protocol.md tells the whole of it.

// The module's commands and replies, one byte each.
struct WireBytes {
    static constexpr std::uint8_t kIdentify = 0x10;
    static constexpr std::uint8_t kSetAddress = 0x14;  // then the address, low byte first
    static constexpr std::uint8_t kRead = 0x15;
    static constexpr std::uint8_t kWrite = 0x16;  // then the byte
    static constexpr std::uint8_t kAcknowledge = 0x06;
    static constexpr std::uint8_t kEndOfText = 0x0D;
};

// Every time of an exchange. The module is slow to take the next byte: the program keeps still for it.
struct WireTimes {
    using Milliseconds = std::chrono::milliseconds;

    // The module's time for a whole reply, from the last byte of the request on.
    static constexpr Milliseconds kReply{1000};
    // Before the port is closed behind an identification.
    static constexpr Milliseconds kAfterIdentification{5};
    // The module takes each byte of an address: after the command, after the low byte.
    static constexpr Milliseconds kAfterAddressByte{5};
    // Before the port is closed behind an acknowledged address.
    static constexpr Milliseconds kAfterAddress{5};
    // Between a byte read and the next request.
    static constexpr Milliseconds kAfterRead{2};
    // Once more, where the byte read belongs to the table data.
    static constexpr Milliseconds kAfterStoring{2};
    // The module takes the write command.
    static constexpr Milliseconds kBeforeWrittenByte{2};
    // Between two programmed bytes.
    static constexpr Milliseconds kAfterWrite{2};
    // At the end of reading, programming and verifying a VIN.
    static constexpr Milliseconds kAfterVin{100};
    // Longer than this between a reply and the next byte, and the ignition may have been cycled meanwhile:
    // the module's address is then no longer the one that was set.
    static constexpr Milliseconds kLongestSilence{1000};
};

}  // namespace rv52
