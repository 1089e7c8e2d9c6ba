#include "module/EepromImage.h"
#include "module/EepromMap.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <set>
#include <stdexcept>

namespace rv52 {
namespace {

EepromBuffer FilledWith(std::uint8_t byte) {
    EepromBuffer buffer;
    buffer.fill(byte);
    return buffer;
}

// The parameters a module reports that holds this byte at index, and byte 0 everywhere else.
ModuleParameters DecodedFrom(std::size_t index, int byte) {
    EepromBuffer buffer{};
    buffer.at(index) = static_cast<std::uint8_t>(byte);
    ModuleParameters parameters;
    DecodeEepromImage(buffer, TableType::RACE, parameters);
    return parameters;
}

EepromBuffer Encoded(const ModuleParameters& parameters) {
    EepromBuffer buffer{};
    EncodeEepromImage(AdvanceTable(TableType::RACE), parameters, TableType::RACE, buffer);
    return buffer;
}

int EncodedCell(double degrees) {
    AdvanceTable table(TableType::RACE);
    table.SetCell({1, 8}, degrees);
    EepromBuffer buffer{};
    EncodeEepromImage(table, {}, TableType::RACE, buffer);
    return buffer[0];
}

std::set<std::size_t> Changed(const EepromBuffer& before, const EepromBuffer& after) {
    std::set<std::size_t> indices;
    for (std::size_t index = 0; index < before.size(); ++index)
        if (before[index] != after[index]) indices.insert(index);
    return indices;
}

std::set<std::size_t> Indices(std::initializer_list<std::pair<std::size_t, std::size_t>> ranges) {
    std::set<std::size_t> indices;
    for (const auto& [first, last] : ranges)
        for (auto index = first; index <= last; ++index)
            indices.insert(index);
    return indices;
}

TEST(EepromImageTest, DecodesTheTwoEmptyImages) {
    for (const auto type : {TableType::RACE, TableType::EX}) {
        ModuleParameters parameters;
        auto table = DecodeEepromImage(FilledWith(0), type, parameters);
        EXPECT_EQ(table, AdvanceTable(type));
        EXPECT_EQ(parameters, (ModuleParameters{-5, -5, 0, 3000, 910, false, false, false, false, 0x00}));

        table = DecodeEepromImage(FilledWith(0xFF), type, parameters);
        ForEachCell(type, [&](Cell cell) { EXPECT_DOUBLE_EQ(table.GetCell(cell), 44.88); });
        EXPECT_EQ(parameters, (ModuleParameters{5, 5, 3, 9900, 1700, true, true, true, true, 0xFF}));
    }
}

TEST(EepromImageTest, LaysRowsFromTheLowestPressureUpInEachRegion) {
    struct Place {
        TableType type;
        std::size_t index;
        Cell cell;
    };
    const Place places[] = {
        {TableType::RACE, 0, {1, 8}},   {TableType::RACE, 15, {16, 8}},  {TableType::RACE, 16, {1, 7}},
        {TableType::RACE, 112, {1, 1}}, {TableType::RACE, 127, {16, 1}}, {TableType::EX, 240, {1, 11}},
        {TableType::EX, 256, {1, 10}},  {TableType::EX, 400, {1, 1}},    {TableType::EX, 415, {16, 1}},
    };
    for (const auto& [type, index, cell] : places) {
        EepromBuffer buffer{};
        buffer.at(index) = 100;
        ModuleParameters parameters;
        AdvanceTable expected(type);
        expected.SetCell(cell, 0.176 * 100);
        EXPECT_EQ(DecodeEepromImage(buffer, type, parameters), expected) << index;

        EepromBuffer encoded{};
        EncodeEepromImage(expected, {}, type, encoded);
        EXPECT_EQ(encoded.at(index), 100) << index;
    }
}

TEST(EepromImageTest, BringsEveryTableByteBack) {
    for (int byte = 0; byte < 256; ++byte) {
        for (const auto type : {TableType::RACE, TableType::EX}) {
            const auto buffer = FilledWith(static_cast<std::uint8_t>(byte));
            ModuleParameters parameters;
            const auto table = DecodeEepromImage(buffer, type, parameters);
            auto again = buffer;
            EncodeEepromImage(table, parameters, type, again);
            for (const auto index : Changed(buffer, again))
                EXPECT_TRUE(index >= 128 && index <= 134) << byte << " at " << index;
        }
    }
}

TEST(EepromImageTest, RoundsAndClampsCells) {
    const double infinite = std::numeric_limits<double>::infinity();
    const std::pair<double, int> cells[] = {
        {0.0, 0},         {0.1, 1},        {10.0, 57},     {44.88, 255},      {45.0, 255},
        {50.0, 255},      {-3.0, 0},       {1e300, 255},   {-1e300, 0},       {0.176 * 2.5, 2},
        {0.176 * 3.5, 4}, {infinite, 255}, {-infinite, 0}, {std::nan(""), 0},
    };
    for (const auto& [degrees, count] : cells)
        EXPECT_EQ(EncodedCell(degrees), count) << degrees;
}

TEST(EepromImageTest, ScalesTimingBothWays) {
    const int bytes[] = {0, 6, 11, 17, 23, 28, 34, 40, 45, 51, 56};
    for (int degrees = -5; degrees <= 5; ++degrees) {
        const int byte = bytes[degrees + 5];
        ModuleParameters parameters;
        parameters.InitialTiming = static_cast<std::int16_t>(degrees);
        parameters.RearOffset = static_cast<std::int16_t>(-degrees);
        EXPECT_EQ(Encoded(parameters)[128], byte);
        EXPECT_EQ(Encoded(parameters)[129], bytes[5 - degrees]);
        EXPECT_EQ(DecodedFrom(128, byte).InitialTiming, degrees);
        EXPECT_EQ(DecodedFrom(129, byte).RearOffset, degrees);
    }
    for (const int byte : {0, 1, 2})
        EXPECT_EQ(DecodedFrom(128, byte).InitialTiming, -5);
    for (const int byte : {57, 60, 200})
        EXPECT_EQ(DecodedFrom(129, byte).RearOffset, 5);
    ModuleParameters wild;
    wild.InitialTiming = -32768;
    wild.RearOffset = 32767;
    EXPECT_EQ(Encoded(wild)[128], 0);
    EXPECT_EQ(Encoded(wild)[129], 56);
}

TEST(EepromImageTest, ScalesTheOtherParametersBothWays) {
    struct Number {
        std::int16_t ModuleParameters::*field;
        std::size_t index;
        int value;
        int byte;
    };
    constexpr auto crank = &ModuleParameters::CrankRevs;
    constexpr auto limit = &ModuleParameters::RPMLimit;
    const Number encodings[] = {
        {crank, 130, 0, 4},     {crank, 130, 1, 30},     {crank, 130, 2, 60},     {crank, 130, 3, 90},
        {crank, 130, -7, 4},    {crank, 130, 32767, 90}, {limit, 132, 3050, 30},  {limit, 132, 3150, 32},
        {limit, 132, 5700, 57}, {limit, 132, 9900, 99},  {limit, 132, 20000, 99}, {limit, 132, -200, 30},
    };
    for (const auto& [field, index, value, byte] : encodings) {
        ModuleParameters parameters;
        parameters.*field = static_cast<std::int16_t>(value);
        EXPECT_EQ(Encoded(parameters).at(index), byte) << index << ": " << value;
    }
    const Number decodings[] = {
        {crank, 130, 0, 4},     {crank, 130, 0, 15},     {crank, 130, 2, 45},   {crank, 130, 2, 75},
        {crank, 130, 3, 90},    {crank, 130, 3, 255},    {limit, 132, 3000, 0}, {limit, 132, 3000, 29},
        {limit, 132, 5700, 57}, {limit, 132, 9900, 100},
    };
    for (const auto& [field, index, value, byte] : decodings)
        EXPECT_EQ(DecodedFrom(index, byte).*field, value) << index << ": " << byte;
}

TEST(EepromImageTest, StoresTheSpeedSensorLowByteFirst) {
    const std::pair<int, int> frequencies[] = {{1424, 0x0590}, {910, 910}, {1700, 1700},
                                               {909, 910},     {-1, 910},  {1701, 1700}};
    for (const auto& [hertz, stored] : frequencies) {
        ModuleParameters parameters;
        parameters.VSSFreq = static_cast<std::int16_t>(hertz);
        const auto buffer = Encoded(parameters);
        EXPECT_EQ(buffer[133] + 256 * buffer[134], stored) << hertz;
        DecodeEepromImage(buffer, TableType::RACE, parameters);
        EXPECT_EQ(parameters.VSSFreq, stored);
    }
    EXPECT_EQ(DecodedFrom(134, 0xFF).VSSFreq, 1700);
}

TEST(EepromImageTest, CarriesUnknownFlagBitsThrough) {
    for (int byte = 0; byte < 256; ++byte) {
        auto parameters = DecodedFrom(131, byte);
        EXPECT_EQ(parameters.FixedLimFlag, (byte & 0x01) != 0);
        EXPECT_EQ(parameters.SelEEPROMTblFlag, (byte & 0x08) != 0);
        EXPECT_EQ(parameters.FixedInitialTmgFlag, (byte & 0x40) != 0);
        EXPECT_EQ(parameters.TachEnableFlag, (byte & 0x80) != 0);
        EXPECT_EQ(Encoded(parameters)[131], byte);

        parameters.FixedLimFlag = parameters.SelEEPROMTblFlag = false;
        parameters.FixedInitialTmgFlag = parameters.TachEnableFlag = false;
        EXPECT_EQ(Encoded(parameters)[131], byte & 0x36);
    }
}

TEST(EepromImageTest, TouchesOnlyTheTargetsBytes) {
    struct Case {
        TableType table;
        TableType target;
        std::set<std::size_t> indices;
    };
    const Case cases[] = {
        {TableType::RACE, TableType::RACE, Indices({{0, 134}})},
        {TableType::EX, TableType::RACE, Indices({{0, 134}})},
        {TableType::EX, TableType::EX, Indices({{128, 134}, {240, 415}})},
    };
    const auto before = FilledWith(0xA9);  // no byte that the encodings below give
    for (const auto& [type, target, indices] : cases) {
        AdvanceTable table(type);
        auto after = before;
        EncodeEepromImage(table, {}, target, after);
        EXPECT_EQ(Changed(before, after), indices);
    }
    auto untouched = before;
    EXPECT_THROW(EncodeEepromImage(AdvanceTable(TableType::RACE), {}, TableType::EX, untouched),
                 std::logic_error);
    EXPECT_EQ(untouched, before);
    ClearEEPROMBuffer(untouched);
    EXPECT_EQ(untouched, EepromBuffer{});
}

TEST(EepromImageTest, GivesARaceModuleTheUpperRowsOfAnExTable) {
    AdvanceTable ex(TableType::EX);
    AdvanceTable upper(TableType::RACE);
    ForEachCell(TableType::EX, [&](Cell cell) { ex.SetCell(cell, cell.row + cell.column / 10.0); });
    ForEachCell(TableType::RACE, [&](Cell cell) { upper.SetCell(cell, ex.GetCell(cell)); });
    EepromBuffer fromEx{};
    EepromBuffer fromRace{};
    EncodeEepromImage(ex, {}, TableType::RACE, fromEx);
    EncodeEepromImage(upper, {}, TableType::RACE, fromRace);
    EXPECT_EQ(fromEx, fromRace);
}

TEST(EepromImageTest, NamesTheBytesThatTravel) {
    struct Expected {
        int address;
        int first;
        int count;
    };
    const auto expect = [](const TransferExtent& extent, std::vector<Expected> ranges) {
        ASSERT_EQ(extent.ranges.size(), ranges.size());
        for (std::size_t number = 0; number < ranges.size(); ++number) {
            EXPECT_EQ(extent.ranges[number].address.value, ranges[number].address);
            EXPECT_EQ(extent.ranges[number].first, ranges[number].first);
            EXPECT_EQ(extent.ranges[number].Count(), ranges[number].count);
        }
    };
    expect(ReadExtent(TableType::RACE), {{16, 0, 135}});
    expect(WriteExtent(TableType::RACE), {{16, 0, 135}});
    expect(ReadExtent(TableType::EX), {{144, 128, 288}});
    expect(WriteExtent(TableType::EX), {{144, 128, 7}, {256, 240, 176}});
}

}  // namespace
}  // namespace rv52
