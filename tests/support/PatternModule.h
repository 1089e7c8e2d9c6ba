#pragma once

#include "support/ConnectedSession.h"
#include "support/WireStory.h"

#include <vector>

namespace rv52::test {

// A byte for each buffer index that tells neighbours and regions apart, the parameter block being one that
// comes back the same from decoding and encoding.
inline std::uint8_t Pattern(int index) {
    constexpr std::uint8_t parameters[] = {28, 34, 60, 0xB6, 57, 0x90, 0x05};
    if (index >= 128 && index <= 134) return parameters[index - 128];
    return static_cast<std::uint8_t>(index * 7 + index / 16 + 3);
}

inline EepromBuffer PatternBuffer() {
    EepromBuffer buffer;
    for (std::size_t index = 0; index < buffer.size(); ++index)
        buffer[index] = Pattern(static_cast<int>(index));
    return buffer;
}

// A module whose EEPROM holds the pattern from address 16 on.
inline ModuleOptions PatternModule(TableType type, bool echo) {
    auto options = Options(type, echo);
    for (int index = 0; index < 416; ++index)
        options.eeprom[index + 16] = Pattern(index);
    return options;
}

// A stretch of bytes on the wire: the two bytes of its address, and its buffer indices.
struct Stretch {
    int low;
    int high;
    int first;
    int last;
};

inline Stretch Readable(TableType type) {
    return type == TableType::EX ? Stretch{0x90, 0, 128, 415} : Stretch{0x10, 0, 0, 134};
}
inline std::vector<Stretch> Writable(TableType type) {
    if (type == TableType::EX) return {{0x90, 0, 128, 134}, {0, 1, 240, 415}};
    return {{0x10, 0, 0, 134}};
}

inline void TellRead(WireStory& story, TableType type) {
    const auto [low, high, first, last] = Readable(type);
    story.Address(low, high);
    for (int index = first; index <= last; ++index)
        story.Read(Pattern(index), 4);
}
inline void TellWriteAndVerify(WireStory& story, TableType type) {
    for (const bool reading : {false, true}) {
        for (const auto& [low, high, first, last] : Writable(type)) {
            story.Address(low, high);
            for (int index = first; index <= last; ++index)
                reading ? story.Read(Pattern(index), 2) : story.Write(Pattern(index));
        }
    }
}

// The EEPROM before, with the pattern where a write of this type puts it.
inline ModuleEeprom Programmed(ModuleEeprom eeprom, TableType type) {
    for (const auto& stretch : Writable(type))
        for (int index = stretch.first; index <= stretch.last; ++index)
            eeprom[index + 16] = Pattern(index);
    return eeprom;
}

}  // namespace rv52::test
