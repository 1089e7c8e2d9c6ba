#pragma once

#include <array>
#include <cstdint>

namespace rv52 {

// The PC's image of the module's EEPROM, as bytes.
using EepromBuffer = std::array<std::uint8_t, 512>;

}  // namespace rv52
