#include "platform/Failure.h"
#include "table/TableBlock.h"
#include "table/TableFile.h"

#include <chrono>
#include <gtest/gtest.h>
#include <tuple>

namespace rv52 {
namespace {

TableFileParameters Read(std::string_view text, const ModuleParameters& current = {}) {
    auto read = UnstatedParameters(current);
    for (const auto& line : FindParameters(text))
        ApplyParameter(line, read);
    return read;
}

TEST(TableFileTest, WritesTheParametersAfterTheTable) {
    const AdvanceTable table(TableType::RACE);
    const ModuleParameters parameters{-3, 0, 0, 5700, 1424, false, true, false, false, 0};
    const char* section =
        "!Module Parameters\r\n!InitialTiming: -3\r\n!RearOffset: 0\r\n!RPMLimit: 5700\r\n!CrankRevs: 0\r\n"
        "!FixedLimFlag: False\r\n!SelEEPROMTblFlag: True\r\n!FixedInitialTmgFlag: False\r\n!VSSFreq: 1424\r\n"
        "!TachEnableFlag: False\r\n!Version: RACE\r\n";
    EXPECT_EQ(FormatTableFile(table, parameters), FormatTableBlock(table) + section);
}

TEST(TableFileTest, AssumesTheUsualForWhatIsNotStated) {
    const auto read = Read("!Module Parameters\r\n", {4, -2, 3, 8000, 1000, true, false, false, true, 0x7F});
    EXPECT_EQ(read.type, TableType::RACE);
    // The flags stay.
    EXPECT_EQ(read.parameters, (ModuleParameters{0, 0, 0, 5700, 1424, true, false, false, true, 0}));
}

TEST(TableFileTest, ReadsNumbersAsTheyAreTyped) {
    constexpr auto limit = &ModuleParameters::RPMLimit;
    constexpr auto vss = &ModuleParameters::VSSFreq;
    constexpr auto timing = &ModuleParameters::InitialTiming;
    constexpr auto crank = &ModuleParameters::CrankRevs;
    constexpr auto rear = &ModuleParameters::RearOffset;
    const std::tuple<const char*, std::int16_t ModuleParameters::*, int> cases[] = {
        {"!RPMLimit: 32767.4", limit, 9900},
        {"!RPMLimit: 100", limit, 3000},
        {"!RPMLimit:", limit, 3000},
        {"!RPMLimit", limit, 3000},
        {"!VSSFreq: 2000", vss, 1700},
        {"!VSSFreq:1000:1100", vss, 1000},
        {"!InitialTiming: -7", timing, -5},
        {"!INITIALTIMING:   +3 degrees", timing, 3},
        {"!CrankRevs: 2.5", crank, 2},
        {"!CrankRevs: 3.5", crank, 3},
        {"!CrankRevs: 1.5", crank, 2},
        {"!RearOffset: x", rear, 0},
        {"10 20 !RearOffset: -.6", rear, -1},
        {"!RearOffset: -32768.5", rear, -5},
        {"!RearOffset: 1\n!RearOffset: 2\r\n!Version: EX", rear, 2},
        {"note: 4 !RearOffset: 2", rear, 4},  // the line's first colon
        {"! RearOffset: 3", rear, 0}};
    for (const auto& [line, field, value] : cases)
        EXPECT_EQ(Read(line).parameters.*field, value) << line;
}

TEST(TableFileTest, ReadsFlagsAndTypes) {
    const std::pair<const char*, bool> flags[] = {
        {" true", true}, {"untrue", true}, {"1", false}, {"", false}};
    for (const auto& [text, flag] : flags) {
        ModuleParameters current;
        current.FixedLimFlag = !flag;
        EXPECT_EQ(Read("!FixedLimFlag:" + std::string(text), current).parameters.FixedLimFlag, flag) << text;
    }
    const std::pair<const char*, TableType> types[] = {
        {"!version: Rex", TableType::EX},
        {"!Version: E X", TableType::RACE},
        {"!Version", TableType::RACE},
        {"!Version: EX\r\n!Version: RACE\r\n", TableType::RACE}};
    for (const auto& [text, type] : types)
        EXPECT_EQ(Read(text).type, type) << text;
}

TEST(TableFileTest, ReportsNumbersBeyondSixteenBitsAndChangesNothing) {
    for (const std::string value :
         {"32768", "32767.5", "-32769", "-32768.6", "1000000000000000000000000000000"}) {
        auto read = UnstatedParameters({});
        read.parameters.RearOffset = 2;
        const auto text = "!RearOffset: " + value;
        EXPECT_THROW(ApplyParameter(FindParameters(text).at(0), read), Failure) << value;
        EXPECT_EQ(read.parameters.RearOffset, 2);
    }
}

TEST(TableFileTest, PassesQuicklyOverWhatItDoesNotKnow) {
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(FindParameters(std::string(1U << 20, '!')).empty());
    EXPECT_TRUE(FindParameters(std::string(1U << 20, '\n')).empty());
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
}

}  // namespace
}  // namespace rv52
