#include "module/EepromImage.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <span>
#include <stdexcept>
#include <tuple>

namespace rv52 {
namespace {

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

TEST(EepromImageTest, BringsEveryByteBack) {
    for (const auto type : {TableType::RACE, TableType::EX}) {
        for (int byte = 0; byte < 256; ++byte) {
            EepromBuffer buffer;
            buffer.fill(static_cast<std::uint8_t>(byte));
            ModuleParameters parameters;
            SCOPED_TRACE(byte);
            const auto table = DecodeEepromImage(buffer, type, parameters);
            for (const double degrees : table.GetValues())
                EXPECT_DOUBLE_EQ(degrees, 0.176 * byte);
            auto again = buffer;
            EncodeEepromImage(table, parameters, type, again);
            std::copy_n(buffer.begin() + 128, 7, again.begin() + 128);  // the parameters, whatever they hold
            EXPECT_EQ(again, buffer);
        }
    }
}

TEST(EepromImageTest, RoundsAndClampsCells) {
    const double infinite = std::numeric_limits<double>::infinity();
    const std::pair<double, int> cells[] = {
        {0.1, 1},         {10.0, 57},       {44.88, 255},    {45.0, 255},    {-3.0, 0},
        {0.176 * 2.5, 2}, {0.176 * 3.5, 4}, {infinite, 255}, {-infinite, 0}, {std::nan(""), 0}};
    for (const auto& [degrees, count] : cells) {
        AdvanceTable table(TableType::RACE);
        table.SetCell({Column(1), Row(8)}, degrees);
        EepromBuffer buffer{};
        EncodeEepromImage(table, {}, TableType::RACE, buffer);
        EXPECT_EQ(buffer[0], count) << degrees;
    }
}

// From the parameter to the byte at its index, and back.
TEST(EepromImageTest, ScalesParametersBothWays) {
    constexpr auto timing = &ModuleParameters::InitialTiming;
    constexpr auto rear = &ModuleParameters::RearOffset;
    constexpr auto crank = &ModuleParameters::CrankRevs;
    constexpr auto limit = &ModuleParameters::RPMLimit;
    constexpr auto vss = &ModuleParameters::VSSFreq;  // low byte first
    using Number = std::tuple<std::int16_t ModuleParameters::*, std::size_t, int, int>;
    const Number bothWays[] = {
        {timing, 128, -5, 0},   {timing, 128, -4, 6},   {timing, 128, -3, 11}, {timing, 128, -2, 17},
        {timing, 128, -1, 23},  {timing, 128, 0, 28},   {timing, 128, 1, 34},  {timing, 128, 5, 56},
        {rear, 129, -5, 0},     {rear, 129, 2, 40},     {rear, 129, 3, 45},    {rear, 129, 4, 51},
        {crank, 130, 0, 4},     {crank, 130, 1, 30},    {crank, 130, 2, 60},   {crank, 130, 3, 90},
        {limit, 132, 3000, 30}, {limit, 132, 5700, 57}, {limit, 132, 9900, 99}};
    const Number encodings[] = {{timing, 128, -32768, 0}, {rear, 129, 32767, 56}, {crank, 130, -7, 4},
                                {crank, 130, 32767, 90},  {limit, 132, 3050, 30}, {limit, 132, 3150, 32},
                                {limit, 132, 20000, 99},  {limit, 132, -200, 30}, {vss, 133, 1424, 0x90},
                                {vss, 134, 1424, 0x05},   {vss, 133, 909, 0x8E},  {vss, 134, 909, 0x03},
                                {vss, 133, -1, 0x8E},     {vss, 133, 1701, 0xA4}, {vss, 134, 1701, 0x06}};
    const Number decodings[] = {{timing, 128, -5, 2}, {timing, 128, 5, 57},   {rear, 129, 5, 200},
                                {crank, 130, 0, 15},  {crank, 130, 2, 45},    {crank, 130, 2, 75},
                                {crank, 130, 3, 255}, {limit, 132, 3000, 29}, {limit, 132, 9900, 100},
                                {vss, 133, 910, 255}, {vss, 134, 1280, 5},    {vss, 134, 1700, 255}};
    for (const auto& numbers : {std::span<const Number>(bothWays), std::span<const Number>(encodings)}) {
        for (const auto& [field, index, value, byte] : numbers) {
            ModuleParameters parameters;
            parameters.*field = static_cast<std::int16_t>(value);
            EXPECT_EQ(Encoded(parameters).at(index), byte) << index << ": " << value;
        }
    }
    for (const auto& numbers : {std::span<const Number>(bothWays), std::span<const Number>(decodings)})
        for (const auto& [field, index, value, byte] : numbers)
            EXPECT_EQ(DecodedFrom(index, byte).*field, value) << index << ": " << byte;
}

TEST(EepromImageTest, CarriesUnknownFlagBitsThrough) {
    for (int byte = 0; byte < 256; ++byte) {
        SCOPED_TRACE(byte);
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
    EepromBuffer buffer{};
    EXPECT_THROW(EncodeEepromImage(AdvanceTable(TableType::RACE), {}, TableType::EX, buffer),
                 std::logic_error);
    EXPECT_EQ(buffer, EepromBuffer{});
}

}  // namespace
}  // namespace rv52
