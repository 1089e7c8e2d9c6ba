#include "core/table/RandomTable.h"
#include "platform/Failure.h"
#include "platform/Text.h"
#include "support/Recorders.h"
#include "support/ShippedFile.h"
#include "table/LimitTables.h"
#include "table/Numbers.h"
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

TEST(TableFileTest, IsATableOnPaperAndTheParametersAfterIt) {
    AdvanceTable table(TableType::RACE);
    table.SetCell({Column(1), Row(1)}, 7.5);
    table.SetCell({Column(16), Row(8)}, 44.88);
    const auto file = FormatTableFile(table, {-3, 0, 0, 5700, 1424, false, true, false, false, 0});
    EXPECT_TRUE(file.starts_with(
        "AdvanceTable 16 8\r\n"
        "MAP/RPM   0 500 1000 1500 2000 2500 3000 3500 4000 4500 5000 5500 6000 6500 7000  7500\r\n"
        "     30 7.5   0    0    0    0    0    0    0    0    0    0    0    0    0    0     0\r\n"
        "     28   0   0 "));
    EXPECT_TRUE(file.ends_with(
        "    0    0 44.88\r\n!Module Parameters\r\n!InitialTiming: -3\r\n!RearOffset: 0\r\n!RPMLimit: "
        "5700\r\n"
        "!CrankRevs: 0\r\n!FixedLimFlag: False\r\n!SelEEPROMTblFlag: True\r\n!FixedInitialTmgFlag: False\r\n"
        "!VSSFreq: 1424\r\n!TachEnableFlag: False\r\n!Version: RACE\r\n"));
}

TEST(TableFileTest, AssumesTheUsualForWhatIsNotStated) {
    const auto read = Read("!Module Parameters\r\n", {4, -2, 3, 8000, 1000, true, false, false, true, 0x7F});
    EXPECT_EQ(read.type, TableType::RACE);
    // The flags stay.
    EXPECT_EQ(read.parameters, (ModuleParameters{0, 0, 0, 5700, 1424, true, false, false, true, 0}));
}

TEST(TableFileTest, ReadsNumbersAsTheyAreTyped) {
    // In the order of the parameters' own: timing, rear offset, crank revolutions, RPM limit, VSS frequency.
    const std::pair<const char*, ModuleParameters> cases[] = {
        {"!RPMLimit: 32767.4\n!VSSFreq: 2000\n!InitialTiming: -7\n!CrankRevs: 2.5\n!RearOffset: x",
         {-5, 0, 2, 9900, 1700}},
        {"!RPMLimit: 100\n!VSSFreq:1000:1100\n!INITIALTIMING:   +3 degrees\n10 20 !RearOffset: -.6",
         {3, -1, 0, 3000, 1000}},
        {"!RPMLimit:\r\n!CrankRevs: 1.5\n!RearOffset: -32768.5", {0, -5, 2, 3000, 1424}},
        {"!RPMLimit\n!CrankRevs: 3.5\n!RearOffset: 1\n!RearOffset: 2\r\n!Version: EX", {0, 2, 3, 3000, 1424}},
        {"!RPMLimit:\t5800\n!VSSFreq:  \t 1000\n!CrankRevs: \t2", {0, 0, 2, 5800, 1000}},
        {"note: 4 !RearOffset: 2\n! CrankRevs: 3", {0, 4, 0, 5700, 1424}}};  // a line's first colon counts
    for (const auto& [text, parameters] : cases)
        EXPECT_EQ(Read(text).parameters, parameters) << text;

    for (const std::string beyond :
         {"32768", "32767.5", "-32769", "-32768.6", "1000000000000000000000000000"}) {
        auto read = UnstatedParameters({});
        read.parameters.RearOffset = 2;
        const auto text = "!RearOffset: " + beyond;
        EXPECT_THROW(ApplyParameter(FindParameters(text).at(0), read), Failure) << beyond;
        EXPECT_EQ(read.parameters.RearOffset, 2);
    }
}

TEST(TableFileTest, ReadsFlagsAndTypes) {
    for (const auto& [text, flag] : {std::pair(" true", true), {"untrue", true}, {"1", false}, {"", false}}) {
        ModuleParameters current;
        current.FixedLimFlag = !flag;
        EXPECT_EQ(Read("!FixedLimFlag:" + std::string(text), current).parameters.FixedLimFlag, flag) << text;
    }
    EXPECT_EQ(Read("!version: Rex").type, TableType::EX);
    for (const auto* text : {"!Version: E X", "!Version", "!Version: EX\r\n!Version: RACE\r\n"})
        EXPECT_EQ(Read(text).type, TableType::RACE) << text;
}

std::string Replaced(std::string text, const std::string& what, const std::string& with) {
    const auto at = text.find(what);
    EXPECT_NE(at, std::string::npos) << what;
    return text.replace(at, what.size(), with);
}

TEST(TableBlockTest, TakesEitherLineEndAndCommentsAndBlankLinesAnywhere) {
    const auto table = test::RandomTable(TableType::EX, 8);
    const auto block = FormatTableBlock(table);
    const std::string passedOver[] = {"! " + std::string(5000, 'x') + "\r\n", "\r\n", "\n", " \t \r\n",
                                      std::string(5000, ' ') + "\n"};
    for (const auto& other : passedOver) {
        SCOPED_TRACE(other.substr(0, 4));
        std::string text = "!Version: EX\n" + other;
        for (const auto line : Lines(block))
            text += std::string(line) + "\n" + other;
        EXPECT_EQ(ParseTableBlock(text, TableType::EX), table);
        EXPECT_EQ(ParseTableBlock(text + other.substr(0, 1), TableType::EX), table)
            << "and no line end after it";
    }
}

TEST(TableBlockTest, RefusesEverythingElse) {
    AdvanceTable table(TableType::RACE);
    table.SetValues(std::vector<double>(128, 12.5));
    const auto good = FormatTableBlock(table);
    ASSERT_EQ(ParseTableBlock(good, TableType::RACE), table);
    EXPECT_FALSE(ParseTableBlock(good, TableType::EX));
    EXPECT_FALSE(ParseTableBlock(FormatTableBlock(AdvanceTable(TableType::EX)), TableType::RACE));

    const auto number = [&](const std::string& with) { return Replaced(good, "12.5", with); };
    const std::pair<const char*, std::string> cases[] = {
        {"comments only", "!Module Parameters\r\n"},
        {"another name", Replaced(good, "AdvanceTable", "advancetable")},
        {"another column count", Replaced(good, "16 8", "17 8")},
        {"a further count", Replaced(good, "16 8", "16 8 1")},
        {"speeds that do not fit", Replaced(good, "7500", "8000")},
        {"a missing speed", Replaced(good, "7500", "    ")},
        {"a pressure that does not fit", Replaced(good, " 28 ", " 29 ")},
        {"an extra number", Replaced(good, "12.5\r\n", "12.5 1\r\n")},
        {"a missing row", good.substr(0, good.rfind("     16"))},
        {"an extra row", good + good.substr(good.rfind("     16"))},
        {"no number", number("nan ")},
        {"a number too large", number("1e999")},
        {"a decimal comma", number("12,5")},
        {"a tab", number("\t12.5")},
        {"a NUL byte in a comment", good + std::string("!\0\r\n", 4)},
        {"an overlong line", Replaced(good, "12.5\r\n", "12.5" + std::string(1000, ' ') + "\r\n")},
        {"a file cut in its last number", good.substr(0, good.size() - 3)},
        {"a file cut before its last line break", good.substr(0, good.size() - 2)},
        {"the same with blanks after it", good.substr(0, good.size() - 2) + "  "},
        {"line ends of carriage returns alone", Replaced(good, "\r\n", "\r")}};
    for (const auto& [what, text] : cases)
        EXPECT_FALSE(ParseTableBlock(text, TableType::RACE)) << what;
}

TEST(TableBlockTest, RefusesMegabytesAtOnce) {
    const auto start = std::chrono::steady_clock::now();
    const std::size_t size = 1U << 20;
    const auto good = FormatTableBlock(AdvanceTable(TableType::RACE));
    for (const auto& text :
         {std::string(size, '9'), std::string(size, '\n'), std::string(size, '!'),
          good + std::string(size, ' ') + "9", "AdvanceTable 16 8\n" + std::string(size, ' ')}) {
        EXPECT_FALSE(ParseTableBlock(text, TableType::RACE));
        EXPECT_TRUE(FindParameters(text).empty());
    }
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
}

AdvanceTable Shipped(TableType type, Limit limit) {
    return ParseTableBlock(test::ShippedFile(std::string(LimitFileName(type, limit))), type).value();
}

// What an engine builder looks for in a table before trusting it.
void ExpectPlausible(const AdvanceTable& table) {
    ForEachCell(table.Type(), [&](Cell cell) {
        const double degrees = table.GetCell(cell);
        const double acrossSpeed = degrees - table.GetCell({Column(std::max(cell.column - 1, 1)), cell.row});
        const double acrossPressure = degrees - table.GetCell({cell.column, Row(std::max(cell.row - 1, 1))});
        const int rpm = RpmOfColumn(cell.column);
        const bool idle = cell.row == 1 && rpm <= 500;
        const bool plateau = cell.row == 1 && rpm >= 3000;
        EXPECT_TRUE(acrossSpeed >= 0 && acrossSpeed <= (rpm > 4000 ? 0.2 : 9)) << acrossSpeed;
        EXPECT_TRUE(acrossPressure >= 0 && acrossPressure <= 2) << acrossPressure;
        EXPECT_TRUE(degrees >= (plateau ? 28 : idle ? 5 : 0)) << degrees;
        EXPECT_TRUE(degrees <= (plateau ? 35 : idle ? 10 : 44)) << degrees;
        // A limit quoted in a message must itself be accepted when typed.
        EXPECT_EQ(EntireNumber(FormatTenths(degrees)), degrees);
    });
}

TEST(LimitTablesTest, ArePlausibleAndNothingWhereTheFileIsUnreadable) {
    for (const auto type : {TableType::RACE, TableType::EX}) {
        const auto minimum = Shipped(type, Limit::Minimum);
        const auto maximum = Shipped(type, Limit::Maximum);
        ExpectPlausible(minimum);
        ExpectPlausible(maximum);
        ForEachCell(type, [&](Cell cell) { EXPECT_LT(minimum.GetCell(cell), maximum.GetCell(cell)); });
    }
    test::MemoryFiles files;
    files.contents["/program/RV52_EX_Max.dat"];
    files.failReads = true;
    EXPECT_FALSE(LoadLimitTable(files, TableType::EX, Limit::Maximum));
}

}  // namespace
}  // namespace rv52
