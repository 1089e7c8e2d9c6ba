#pragma once

#include <cstdint>

namespace rv52 {

// The module's commands and replies, one byte each.
struct WireBytes {
    static constexpr std::uint8_t kIdentify = 0x10;
    static constexpr std::uint8_t kSetAddress = 0x14;  // then the address, low byte first
    static constexpr std::uint8_t kRead = 0x15;
    static constexpr std::uint8_t kWrite = 0x16;  // then the byte
    static constexpr std::uint8_t kAcknowledge = 0x06;
    static constexpr std::uint8_t kEndOfText = 0x0D;
};

}  // namespace rv52
