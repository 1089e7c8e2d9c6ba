#pragma once

#include "table/TableType.h"

#include <array>
#include <cstdint>
#include <span>

namespace rv52 {

// A place in the module's EEPROM. The buffer counts from elsewhere: an index is not an address.
struct EepromAddress {
    int value = 0;

    bool operator==(const EepromAddress&) const = default;
};

// The PC's image of the module's EEPROM, as bytes.
using EepromBuffer = std::array<std::uint8_t, 512>;

// The buffer mirrors the module's EEPROM from this address on.
constexpr EepromAddress kImageStart{16};

constexpr EepromAddress AddressOf(int index) {
    return {index + kImageStart.value};
}

// What lies where in the buffer, as indices.
struct EepromMap {
    static constexpr int kRaceTable = 0;  // 8 MAP rows of 16 bytes
    static constexpr int kInitialTiming = 128;
    static constexpr int kRearOffset = 129;
    static constexpr int kCrankRevs = 130;
    static constexpr int kFlags = 131;
    static constexpr int kRPMLimit = 132;
    static constexpr int kVSSFreqLow = 133;
    static constexpr int kVSSFreqHigh = 134;
    static constexpr int kExTable = 240;  // 11 MAP rows of 16 bytes
    static constexpr int kExTableLast = kExTable + 11 * kColumnCount - 1;

    static constexpr int Table(TableType type) { return type == TableType::EX ? kExTable : kRaceTable; }
};

// Bytes that travel in a row: one set address, then one exchange for each index, first to last.
struct TransferRange {
    EepromAddress address;
    int first = 0;
    int last = 0;

    constexpr int Count() const { return last - first + 1; }
};

// A range of the table data, where address and index differ by the image's start.
constexpr TransferRange ImageRange(int first, int last) {
    return {AddressOf(first), first, last};
}

// A whole transfer: its ranges, and the byte, counted from 0 over all of them, that is its 100 %.
struct TransferExtent {
    std::span<const TransferRange> ranges;
    int fullPosition = 0;
};

// An EX read brings in what lies between the parameters and the EX table; an EX write leaves it alone.
inline constexpr std::array kRaceRanges{ImageRange(EepromMap::kRaceTable, EepromMap::kVSSFreqHigh)};
inline constexpr std::array kExReadRanges{ImageRange(EepromMap::kInitialTiming, EepromMap::kExTableLast)};
inline constexpr std::array kExWriteRanges{ImageRange(EepromMap::kInitialTiming, EepromMap::kVSSFreqHigh),
                                           ImageRange(EepromMap::kExTable, EepromMap::kExTableLast)};

constexpr TransferExtent ReadExtent(TableType module) {
    if (module == TableType::EX) return {kExReadRanges, kExReadRanges[0].Count() - 1};
    return {kRaceRanges, kRaceRanges[0].Count() - 1};
}

// What programming writes and verifying reads back. An EX write counts towards all of its bytes, so its
// last one stands at 99 %.
constexpr TransferExtent WriteExtent(TableType module) {
    if (module == TableType::EX)
        return {kExWriteRanges, kExWriteRanges[0].Count() + kExWriteRanges[1].Count()};
    return ReadExtent(module);
}

// The VIN, one byte for each character. Its bytes pass through the buffer at the indices of their addresses,
// beyond the table data.
inline constexpr std::array kVinRanges{TransferRange{{432}, 432, 448}};

}  // namespace rv52
