#pragma once

#include "table/TableType.h"

#include <array>
#include <cstdint>

namespace rv52 {

// The module's own EEPROM: the index is the module's address, not an index of the PC's buffer.
struct ModuleEeprom {
    static constexpr int kSize = 512;
    static constexpr int kVin = 432;
    static constexpr int kVinLength = 17;
    static constexpr std::uint8_t kErased = 0xFF;

    // The memory has nine address lines: addresses beyond its end begin again at 0.
    std::uint8_t& operator[](int address) { return bytes[static_cast<std::size_t>(address % kSize)]; }
    std::uint8_t operator[](int address) const { return bytes[static_cast<std::size_t>(address % kSize)]; }

    std::array<std::uint8_t, kSize> bytes{};

    bool operator==(const ModuleEeprom&) const = default;
};

// As a module of this type leaves the works: an advance table that an engine would start and run on,
// ordinary parameters and a VIN; erased memory elsewhere.
ModuleEeprom FactoryEeprom(TableType type);

}  // namespace rv52
