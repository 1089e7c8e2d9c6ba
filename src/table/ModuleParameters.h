#pragma once

#include <cstdint>

namespace rv52 {

// A range with both ends included.
struct Range {
    int lowest;
    int highest;

    constexpr int Clamp(int value) const {
        return value < lowest ? lowest : value > highest ? highest : value;
    }
};

// The module's parameter block. The initializers are the values at start-up.
struct ModuleParameters {
    static constexpr Range kTiming{-5, 5};         // degrees, InitialTiming and RearOffset
    static constexpr Range kCrankRevs{0, 3};       // revolutions
    static constexpr Range kRPMLimit{3000, 9900};  // rpm, in steps of kRpmStep
    static constexpr int kRpmStep = 100;
    static constexpr Range kVSSFreq{910, 1700};  // Hz at 100 km/h

    std::int16_t InitialTiming = 0;
    std::int16_t RearOffset = 0;
    std::int16_t CrankRevs = 0;
    std::int16_t RPMLimit = kRPMLimit.lowest;
    std::int16_t VSSFreq = 1424;
    bool FixedLimFlag = false;     // fixed RPM limit enabled
    bool SelEEPROMTblFlag = true;  // the module runs the table in EEPROM, not its FLASH tables
    bool FixedInitialTmgFlag = false;
    bool TachEnableFlag = false;
    // The flag byte as last decoded: its bits that are not known here go back to the module unchanged.
    std::uint8_t FlagByte = 0;

    bool operator==(const ModuleParameters&) const = default;
};

}  // namespace rv52
