#include "core/table/RandomTable.h"
#include "table/TableBlock.h"
#include "table/Text.h"

#include <chrono>
#include <gtest/gtest.h>

namespace rv52 {
namespace {

std::string Replaced(std::string text, const std::string& what, const std::string& with) {
    const auto at = text.find(what);
    EXPECT_NE(at, std::string::npos) << what;
    return text.replace(at, what.size(), with);
}

TEST(TableBlockTest, ReadsAsATableOnPaper) {
    AdvanceTable table(TableType::RACE);
    table.SetCell({1, 1}, 7.5);
    table.SetCell({16, 8}, 44.88);
    EXPECT_TRUE(FormatTableBlock(table).starts_with(
        "AdvanceTable 16 8\r\n"
        "MAP/RPM   0 500 1000 1500 2000 2500 3000 3500 4000 4500 5000 5500 6000 6500 7000  7500\r\n"
        "     30 7.5   0    0    0    0    0    0    0    0    0    0    0    0    0    0     0\r\n"
        "     28   0   0 "));
    EXPECT_TRUE(FormatTableBlock(table).ends_with("    0    0 44.88\r\n"));
}

TEST(TableBlockTest, TakesEitherLineEndAndCommentsAnywhere) {
    const auto table = test::RandomTable(TableType::EX, 8);
    const auto block = FormatTableBlock(table);
    std::string text = "!Version: EX\n";
    for (const auto line : Lines(block))
        text += std::string(line) + "\n! " + std::string(5000, 'x') + "\r\n";
    EXPECT_EQ(ParseTableBlock(text + "!", TableType::EX), table);
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
        {"an empty line", Replaced(good, "\r\n", "\r\n\r\n")},
        {"no number", number("nan ")},
        {"a number too large", number("1e999")},
        {"a decimal comma", number("12,5")},
        {"a tab", number("\t12.5")},
        {"a NUL byte in a comment", good + std::string("!\0\r\n", 4)},
        {"an overlong line", Replaced(good, "12.5\r\n", "12.5" + std::string(1000, ' ') + "\r\n")},
        {"a file cut in its last number", good.substr(0, good.size() - 3)},
        {"a file cut before its last line break", good.substr(0, good.size() - 2)},
        {"line ends of carriage returns alone", Replaced(good, "\r\n", "\r")}};
    for (const auto& [what, text] : cases)
        EXPECT_FALSE(ParseTableBlock(text, TableType::RACE)) << what;
}

TEST(TableBlockTest, RefusesMegabytesAtOnce) {
    const auto start = std::chrono::steady_clock::now();
    const std::size_t size = 4U << 20;
    const auto good = FormatTableBlock(AdvanceTable(TableType::RACE));
    for (const auto& text : {std::string(size, '9'), std::string(size, '\n'), std::string(size, '!'),
                             good + std::string(size, ' '), "AdvanceTable 16 8\n" + std::string(size, ' ')})
        EXPECT_FALSE(ParseTableBlock(text, TableType::RACE));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
}

}  // namespace
}  // namespace rv52
