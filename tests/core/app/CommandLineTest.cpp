#include "app/CommandLine.h"

#include <gtest/gtest.h>
#include <vector>

namespace rv52 {
namespace {

std::variant<CommandLine, std::string> Parse(const std::vector<const char*>& arguments) {
    return ParseCommandLine(arguments);
}

TEST(CommandLineTest, TakesPortsSimulatorAndTableFile) {
    const auto parsed = Parse({"--com", "3=/dev/a=b", "--com=255=x", "--simulate", "EX", "table.tbl"});
    const auto& line = std::get<CommandLine>(parsed);
    EXPECT_EQ(line.devices, (std::map<int, std::string>{{3, "/dev/a=b"}, {255, "x"}}));
    EXPECT_EQ(line.simulate, TableType::EX);
    EXPECT_EQ(line.tableFile, "table.tbl");
    EXPECT_FALSE(line.help);
    EXPECT_TRUE(std::get<CommandLine>(Parse({"--help"})).help);
    EXPECT_TRUE(std::get<CommandLine>(Parse({"--version"})).version);
}

TEST(CommandLineTest, RefusesWhatItDoesNotKnowInOneLine) {
    const std::vector<const char*> wrong[] = {
        {"--what", "a.tbl"},  {"a.tbl", "--com"}, {"--com", "3"},        {"--com", "0=/dev/x"},
        {"--com", "256=x"},   {"--com", "3="},    {"--com", "=x"},       {"--com", "3x=/dev/x"},
        {"--simulate", "ex"}, {"a.tbl", "b.tbl"}, {"", "--simulate=EX"}, {"--help=yes", "a.tbl"},
        {"--two\nlines"}};
    for (const auto& arguments : wrong) {
        const auto parsed = Parse(arguments);
        ASSERT_TRUE(std::holds_alternative<std::string>(parsed)) << arguments.front() << arguments.back();
        EXPECT_EQ(std::get<std::string>(parsed).find('\n'), std::string::npos);
    }
}

}  // namespace
}  // namespace rv52
