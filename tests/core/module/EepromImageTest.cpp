#include "module/EepromImage.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <stdexcept>
#include <tuple>

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

TEST(EepromImageTest, BringsEveryTableByteBack) {
    for (int byte = 0; byte < 256; ++byte) {
        for (const auto type : {TableType::RACE, TableType::EX}) {
            const auto buffer = FilledWith(static_cast<std::uint8_t>(byte));
            ModuleParameters parameters;
            const auto table = DecodeEepromImage(buffer, type, parameters);
            auto again = buffer;
            EncodeEepromImage(table, parameters, type, again);
            std::copy_n(buffer.begin() + 128, 7, again.begin() + 128);  // the parameters
            EXPECT_EQ(again, buffer);
        }
    }
}

TEST(EepromImageTest, RoundsAndClampsCells) {
    const double infinite = std::numeric_limits<double>::infinity();
    const std::pair<double, int> cells[] = {
        {0.0, 0},         {0.1, 1},        {10.0, 57},     {44.88, 255},     {45.0, 255},
        {50.0, 255},      {-3.0, 0},       {1e300, 255},   {-1e300, 0},      {0.176 * 2.5, 2},
        {0.176 * 3.5, 4}, {infinite, 255}, {-infinite, 0}, {std::nan(""), 0}};
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
    using Number = std::tuple<std::int16_t ModuleParameters::*, std::size_t, int, int>;
    constexpr auto crank = &ModuleParameters::CrankRevs;
    constexpr auto limit = &ModuleParameters::RPMLimit;
    const Number encodings[] = {{crank, 130, 0, 4},     {crank, 130, 1, 30},     {crank, 130, 2, 60},
                                {crank, 130, 3, 90},    {crank, 130, -7, 4},     {crank, 130, 32767, 90},
                                {limit, 132, 3050, 30}, {limit, 132, 3150, 32},  {limit, 132, 5700, 57},
                                {limit, 132, 9900, 99}, {limit, 132, 20000, 99}, {limit, 132, -200, 30}};
    for (const auto& [field, index, value, byte] : encodings) {
        ModuleParameters parameters;
        parameters.*field = static_cast<std::int16_t>(value);
        EXPECT_EQ(Encoded(parameters).at(index), byte) << index << ": " << value;
    }
    const Number decodings[] = {{crank, 130, 0, 4},     {crank, 130, 0, 15},    {crank, 130, 2, 45},
                                {crank, 130, 2, 75},    {crank, 130, 3, 90},    {crank, 130, 3, 255},
                                {limit, 132, 3000, 0},  {limit, 132, 3000, 29}, {limit, 132, 5700, 57},
                                {limit, 132, 9900, 100}};
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

TEST(EepromImageTest, HasNoPlaceForARaceTableInAnExModule) {
    auto buffer = FilledWith(0xA9);
    EXPECT_THROW(EncodeEepromImage(AdvanceTable(TableType::RACE), {}, TableType::EX, buffer),
                 std::logic_error);
    EXPECT_EQ(buffer, FilledWith(0xA9));
    ClearEEPROMBuffer(buffer);
    EXPECT_EQ(buffer, EepromBuffer{});
}

}  // namespace
}  // namespace rv52
