#include "module/EepromImage.h"

#include "module/EepromMap.h"
#include "table/Numbers.h"

#include <algorithm>
#include <stdexcept>

namespace rv52 {

namespace {

constexpr int kCountsPerRevolution = 30;
constexpr int kRpmPerCount = ModuleParameters::kRpmStep;

// What the module accepts in the bytes of its parameter block.
constexpr Range kTimingCounts{0, 56};
constexpr Range kCrankCounts{4, 90};  // no cranking revolution at all is sent as 4
constexpr Range kRPMLimitCounts{ModuleParameters::kRPMLimit.lowest / kRpmPerCount,
                                ModuleParameters::kRPMLimit.highest / kRpmPerCount};
constexpr Range kByte{0, 255};

constexpr std::uint8_t kFixedLim = 0x01;
constexpr std::uint8_t kSelEEPROMTbl = 0x08;
constexpr std::uint8_t kFixedInitialTmg = 0x40;
constexpr std::uint8_t kTachEnable = 0x80;

std::uint8_t& At(EepromBuffer& buffer, int index) {
    return buffer.at(static_cast<std::size_t>(index));
}

int At(const EepromBuffer& buffer, int index) {
    return buffer.at(static_cast<std::size_t>(index));
}

// A table region holds the rows from the lowest pressure up, which are the table's from row R down.
int RegionOffset(Cell cell, TableType type) {
    return (RowCount(type) - cell.row) * kColumnCount + cell.column - 1;
}

// Clamped before it is rounded, so that no value, however wild, wraps round to a plausible byte.
std::uint8_t Counts(double exact, const Range& range) {
    if (!(exact > range.lowest)) return static_cast<std::uint8_t>(range.lowest);
    return static_cast<std::uint8_t>(RoundHalfEven(std::min<double>(exact, range.highest)));
}

std::int16_t Short(double value) {
    return static_cast<std::int16_t>(value);
}

std::int16_t TimingOf(int count) {
    const double degrees = RoundHalfEven(kDegreesPerCount * count) + ModuleParameters::kTiming.lowest;
    return Short(std::min<double>(degrees, ModuleParameters::kTiming.highest));
}

std::uint8_t TimingCounts(int degrees) {
    return Counts((degrees - ModuleParameters::kTiming.lowest) / kDegreesPerCount, kTimingCounts);
}

std::uint8_t FlagsOf(const ModuleParameters& parameters) {
    int flags = parameters.FlagByte;
    const auto set = [&](std::uint8_t bit, bool on) { flags = on ? flags | bit : flags & ~bit; };
    set(kFixedLim, parameters.FixedLimFlag);
    set(kSelEEPROMTbl, parameters.SelEEPROMTblFlag);
    set(kFixedInitialTmg, parameters.FixedInitialTmgFlag);
    set(kTachEnable, parameters.TachEnableFlag);
    return static_cast<std::uint8_t>(flags);
}

ModuleParameters DecodeParameters(const EepromBuffer& buffer) {
    const int flags = At(buffer, EepromMap::kFlags);
    const int vss = At(buffer, EepromMap::kVSSFreqLow) + 256 * At(buffer, EepromMap::kVSSFreqHigh);
    const int crank = At(buffer, EepromMap::kCrankRevs);
    return {
        .InitialTiming = TimingOf(At(buffer, EepromMap::kInitialTiming)),
        .RearOffset = TimingOf(At(buffer, EepromMap::kRearOffset)),
        .CrankRevs = Short(std::min<double>(RoundHalfEven(double(crank) / kCountsPerRevolution),
                                            ModuleParameters::kCrankRevs.highest)),
        .RPMLimit = Short(ModuleParameters::kRPMLimit.Clamp(At(buffer, EepromMap::kRPMLimit) * kRpmPerCount)),
        .VSSFreq = Short(ModuleParameters::kVSSFreq.Clamp(vss)),
        .FixedLimFlag = (flags & kFixedLim) != 0,
        .SelEEPROMTblFlag = (flags & kSelEEPROMTbl) != 0,
        .FixedInitialTmgFlag = (flags & kFixedInitialTmg) != 0,
        .TachEnableFlag = (flags & kTachEnable) != 0,
        .FlagByte = static_cast<std::uint8_t>(flags),
    };
}

void EncodeParameters(const ModuleParameters& parameters, EepromBuffer& buffer) {
    const int vss = ModuleParameters::kVSSFreq.Clamp(parameters.VSSFreq);
    At(buffer, EepromMap::kInitialTiming) = TimingCounts(parameters.InitialTiming);
    At(buffer, EepromMap::kRearOffset) = TimingCounts(parameters.RearOffset);
    At(buffer, EepromMap::kCrankRevs) = Counts(parameters.CrankRevs * kCountsPerRevolution, kCrankCounts);
    At(buffer, EepromMap::kFlags) = FlagsOf(parameters);
    At(buffer, EepromMap::kRPMLimit) = Counts(double(parameters.RPMLimit) / kRpmPerCount, kRPMLimitCounts);
    At(buffer, EepromMap::kVSSFreqLow) = static_cast<std::uint8_t>(vss % 256);
    At(buffer, EepromMap::kVSSFreqHigh) = static_cast<std::uint8_t>(vss / 256);
}

}  // namespace

AdvanceTable DecodeEepromImage(const EepromBuffer& buffer, TableType type, ModuleParameters& parameters) {
    auto table = CreateTable(type);
    ForEachCell(type, [&](Cell cell) {
        const int count = At(buffer, EepromMap::Table(type) + RegionOffset(cell, type));
        table.SetCell(cell, kDegreesPerCount * count);
    });
    parameters = DecodeParameters(buffer);
    return table;
}

void EncodeEepromImage(const AdvanceTable& table, const ModuleParameters& parameters, TableType target,
                       EepromBuffer& buffer) {
    if (table.RowCount() < RowCount(target))
        throw std::logic_error("a RACE table has no rows for the lowest pressures of an EX module");
    ForEachCell(target, [&](Cell cell) {
        At(buffer, EepromMap::Table(target) + RegionOffset(cell, target)) =
            Counts(table.GetCell(cell) / kDegreesPerCount, kByte);
    });
    EncodeParameters(parameters, buffer);
}

void ClearEEPROMBuffer(EepromBuffer& buffer) {
    buffer.fill(0);
}

}  // namespace rv52
