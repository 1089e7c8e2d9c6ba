#include "module/EepromImage.h"
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
    ModuleParameters parameters;
    parameters.RPMLimit = 5700;
    parameters.InitialTiming = -3;
    const AdvanceTable table(TableType::RACE);
    EXPECT_EQ(FormatTableFile(table, parameters), FormatTableBlock(table) +
                                                      "!Module Parameters\r\n"
                                                      "!InitialTiming: -3\r\n"
                                                      "!RearOffset: 0\r\n"
                                                      "!RPMLimit: 5700\r\n"
                                                      "!CrankRevs: 0\r\n"
                                                      "!FixedLimFlag: False\r\n"
                                                      "!SelEEPROMTblFlag: True\r\n"
                                                      "!FixedInitialTmgFlag: False\r\n"
                                                      "!VSSFreq: 1424\r\n"
                                                      "!TachEnableFlag: False\r\n"
                                                      "!Version: RACE\r\n");
}

TEST(TableFileTest, CarriesEveryByteOfAModule) {
    for (const auto type : {TableType::RACE, TableType::EX}) {
        for (unsigned shift = 0; shift < 256; ++shift) {
            EepromBuffer image{};
            for (std::size_t index = 0; index < image.size(); ++index)
                image[index] = static_cast<std::uint8_t>(index + shift);
            ModuleParameters parameters;
            const auto table = DecodeEepromImage(image, type, parameters);

            const auto file = FormatTableFile(table, parameters);
            const auto read = Read(file);
            const auto back = ParseTableBlock(file, read.type);
            ASSERT_EQ(back, table);
            parameters.FlagByte = 0;  // the flags that the file does not know
            auto expected = image;
            auto restored = image;
            EncodeEepromImage(table, parameters, type, expected);
            EncodeEepromImage(*back, read.parameters, type, restored);
            ASSERT_EQ(restored, expected) << shift;
            ModuleParameters ignored;
            ASSERT_EQ(DecodeEepromImage(restored, type, ignored), table) << shift;
        }
    }
}

TEST(TableFileTest, AssumesTheUsualForWhatIsNotStated) {
    ModuleParameters current;
    current.InitialTiming = 4;
    current.RearOffset = -2;
    current.CrankRevs = 3;
    current.RPMLimit = 8000;
    current.VSSFreq = 1000;
    current.FlagByte = 0x7F;
    current.FixedLimFlag = current.TachEnableFlag = true;
    current.SelEEPROMTblFlag = false;
    const auto read = Read("!Module Parameters\r\n", current);
    EXPECT_EQ(read.type, TableType::RACE);
    auto expected = current;  // the flags stay
    expected.InitialTiming = expected.RearOffset = expected.CrankRevs = 0;
    expected.RPMLimit = 5700;
    expected.VSSFreq = 1424;
    expected.FlagByte = 0;
    EXPECT_EQ(read.parameters, expected);
}

TEST(TableFileTest, ReadsNumbersAsTheyAreTyped) {
    const std::tuple<const char*, std::int16_t ModuleParameters::*, int> cases[] = {
        {"!RPMLimit: 12000", &ModuleParameters::RPMLimit, 9900},
        {"!RPMLimit: 100", &ModuleParameters::RPMLimit, 3000},
        {"!RPMLimit: 32767.4", &ModuleParameters::RPMLimit, 9900},
        {"!RPMLimit:", &ModuleParameters::RPMLimit, 3000},
        {"!RPMLimit", &ModuleParameters::RPMLimit, 3000},
        {"!VSSFreq: 2000", &ModuleParameters::VSSFreq, 1700},
        {"!VSSFreq:1000:1100", &ModuleParameters::VSSFreq, 1000},
        {"!InitialTiming: -7", &ModuleParameters::InitialTiming, -5},
        {"!INITIALTIMING:   +3 degrees", &ModuleParameters::InitialTiming, 3},
        {"!CrankRevs: 2.5", &ModuleParameters::CrankRevs, 2},
        {"!CrankRevs: 3.5", &ModuleParameters::CrankRevs, 3},
        {"!CrankRevs: 1.5", &ModuleParameters::CrankRevs, 2},
        {"!RearOffset: x", &ModuleParameters::RearOffset, 0},
        {"10 20 !RearOffset: -.6", &ModuleParameters::RearOffset, -1},
        {"!RearOffset: 1\n!RearOffset: 2\r\n!Version: EX", &ModuleParameters::RearOffset, 2},
        {"note: 4 !RearOffset: 2", &ModuleParameters::RearOffset, 4},  // the line's first colon
        {"! RearOffset: 3", &ModuleParameters::RearOffset, 0}};
    for (const auto& [line, field, value] : cases)
        EXPECT_EQ(Read(line).parameters.*field, value) << line;
}

TEST(TableFileTest, ReadsFlagsAndTypes) {
    const std::tuple<const char*, bool> flags[] = {{" true", true}, {"TRUE", true}, {"untrue", true},
                                                   {"1", false},    {"yes", false}, {"", false}};
    for (const auto& [text, flag] : flags) {
        ModuleParameters current;
        current.FixedLimFlag = !flag;
        EXPECT_EQ(Read("!FixedLimFlag:" + std::string(text), current).parameters.FixedLimFlag, flag) << text;
    }
    const std::tuple<const char*, TableType> types[] = {
        {"!Version: ex", TableType::EX},
        {"!version: Rex", TableType::EX},
        {"!Version: RACE", TableType::RACE},
        {"!Version: E X", TableType::RACE},
        {"!Version", TableType::RACE},
        {"!Version: EX\r\n!Version: RACE\r\n", TableType::RACE},
        {"!Version: RACE\n!Version: EX", TableType::EX}};
    for (const auto& [text, type] : types)
        EXPECT_EQ(Read(text).type, type) << text;
}

TEST(TableFileTest, ReportsNumbersBeyondSixteenBitsAndChangesNothing) {
    for (const auto* value : {"32768", "32767.5", "-32769", "-32768.6", "1000000000000000000000000000000"}) {
        auto read = UnstatedParameters({});
        read.parameters.RearOffset = 2;
        const auto text = "!RearOffset: " + std::string(value);
        EXPECT_THROW(ApplyParameter(FindParameters(text).at(0), read), Failure) << value;
        EXPECT_EQ(read.parameters.RearOffset, 2);
    }
    EXPECT_THROW(Read("!VSSFreq: " + std::string(5000, '9')), Failure);
    EXPECT_EQ(Read("!RearOffset: -32768.5").parameters.RearOffset, -5);
}

TEST(TableFileTest, PassesQuicklyOverWhatItDoesNotKnow) {
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(FindParameters(std::string(1U << 20, '!')).empty());
    EXPECT_TRUE(FindParameters(std::string(1U << 20, '\n')).empty());
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
}

}  // namespace
}  // namespace rv52
