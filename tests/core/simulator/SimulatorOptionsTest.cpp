#include "simulator/SimulatorOptions.h"

#include <gtest/gtest.h>
#include <stdexcept>

namespace rv52 {
namespace {

SimulatorOptions Parse(const std::vector<const char*>& arguments) {
    return ParseSimulatorOptions(arguments);
}

TEST(SimulatorOptionsTest, AreRead) {
    const auto none = Parse({});
    EXPECT_EQ(none.type, TableType::RACE);
    EXPECT_TRUE(none.echo);
    EXPECT_FALSE(none.bitsPerSecond);

    const auto all = Parse({"--type", "EX", "--echo=off", "--image", "a=b.bin", "--pace=56000", "--fault",
                            "silent=3", "--fault=flipped-bit", "--seed", "18446744073709551615", "--trace",
                            "wire.txt", "--id", "Bench"});
    EXPECT_EQ(all.type, TableType::EX);
    EXPECT_FALSE(all.echo);
    EXPECT_EQ(all.imagePath, "a=b.bin");
    EXPECT_EQ(all.bitsPerSecond, 56000);
    ASSERT_EQ(all.faults.size(), 2U);
    EXPECT_EQ(all.faults[0].k, 3);
    EXPECT_FALSE(all.faults[1].k);
    EXPECT_EQ(all.seed, 18446744073709551615U);
    EXPECT_EQ(all.tracePath, "wire.txt");
    EXPECT_EQ(all.identification, "RV52A EX Bench");
    EXPECT_EQ(CompleteIdentification("RV52A 9.0", TableType::RACE), "RV52A 9.0");
    EXPECT_EQ(CompleteIdentification("RV52A 9.0", TableType::EX), "EX RV52A 9.0");
}

TEST(SimulatorOptionsTest, AreRefusedInOneLineThatNamesWhatIsWrong) {
    using Row = std::pair<std::vector<const char*>, const char*>;
    const Row rows[] = {{{"--typ", "EX"}, "--typ"},         {{"EX"}, "EX"},
                        {{"--help=1"}, "--help=1"},         {{"--type", "race"}, "--type"},
                        {{"--echo", "maybe"}, "maybe"},     {{"--image"}, "--image"},
                        {{"--image="}, "--image"},          {{"--pace", "fast"}, "--pace"},
                        {{"--pace", "0"}, "--pace"},        {{"--seed", "-1"}, "--seed"},
                        {{"--fault", "noise"}, "noise"},    {{"--fault", "silent=0"}, "silent"},
                        {{"--fault", "silent="}, "silent"}, {{"--fault", "silent=1x"}, "silent"},
                        {{"--id", "Exhaust"}, "EX"},        {{"--type=EX", "--id", "a\rb"}, "--id"}};
    for (const auto& [arguments, named] : rows) {
        try {
            Parse(arguments);
            ADD_FAILURE() << arguments.front() << " was taken";
        } catch (const std::invalid_argument& error) {
            EXPECT_EQ(std::string(error.what()).find('\n'), std::string::npos);
            EXPECT_NE(std::string(error.what()).find(named), std::string::npos) << error.what();
        }
    }
}

}  // namespace
}  // namespace rv52
