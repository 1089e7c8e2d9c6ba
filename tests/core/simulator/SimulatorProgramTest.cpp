#include "core/simulator/SimulatorProgram.h"
#include "support/TemporaryFolder.h"

#include <algorithm>
#include <csignal>
#include <fstream>
#include <gtest/gtest.h>

namespace rv52 {
namespace {

using namespace std::chrono_literals;
using test::Bytes;
using test::SerialDevice;
using test::SimulatorProgram;

std::string Content(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

Bytes BytesOf(std::string_view text) {
    return {text.begin(), text.end()};
}

TEST(SimulatorProgramTest, ServesAcrossOpensAndKeepsItsMemory) {
    const test::TemporaryFolder folder;
    const auto image = folder.Path() / "module.bin";
    for (const int signal : {SIGTERM, SIGINT}) {
        SimulatorProgram simulator({"--echo", "off", "--type", "EX", "--image", image});
        EXPECT_EQ(SerialDevice(simulator.FirstLine()).Exchange({0x10}, 17), BytesOf("RV52A EX SIM 8.1\r"));
        SerialDevice device(simulator.FirstLine());
        EXPECT_EQ(device.Exchange({0x14, 0x00, 0x01}, 1), Bytes{0x06});
        EXPECT_EQ(device.Exchange({0x16, static_cast<std::uint8_t>(signal)}, 1), Bytes{0x06});
        EXPECT_EQ(simulator.End(signal), 0);
        ASSERT_EQ(Content(image).size(), 512U);
        EXPECT_EQ(Content(image)[256], signal);
    }
}

TEST(SimulatorProgramTest, CarriesEveryByteValueUnchanged) {
    const test::TemporaryFolder folder;
    const auto trace = folder.Path() / "wire.txt";
    SimulatorProgram simulator({"--trace", trace});
    SerialDevice device(simulator.FirstLine());
    device.Exchange({0x14, 0x00, 0x00}, 4);
    for (int value = 0; value < 256; ++value) {
        const auto byte = static_cast<std::uint8_t>(value);
        ASSERT_EQ(device.Exchange({0x16, byte}, 3), (Bytes{0x16, byte, 0x06}));
    }
    device.Exchange({0x14, 0x00, 0x00}, 4);
    for (int value = 0; value < 256; ++value)
        ASSERT_EQ(device.Exchange({0x15}, 2), (Bytes{0x15, static_cast<std::uint8_t>(value)}));
    EXPECT_EQ(simulator.End(SIGTERM), 0);

    const auto lines = Content(trace);
    EXPECT_EQ(lines.find('\n'), std::string("0.000000 >14").size()) << lines.substr(0, 40);
    EXPECT_EQ(std::count(lines.begin(), lines.end(), '>'), 3 + 2 * 256 + 3 + 256);
    EXPECT_TRUE(lines.ends_with(" <FF\n"));
}

TEST(SimulatorProgramTest, TakesTheTimeOfARealLine) {
    SimulatorProgram simulator({"--echo=off", "--pace=1000"});
    SerialDevice device(simulator.FirstLine());
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(device.Exchange({0x14, 0x00, 0x00}, 1).size(), 1U);
    // Three bytes there and one back, of 10 ms each; a busy machine may take longer, never shorter.
    EXPECT_GE(std::chrono::steady_clock::now() - start, 40ms);
}

TEST(SimulatorProgramTest, HangsUpSoThatTheDeviceIsGone) {
    SimulatorProgram simulator({"--echo", "off", "--fault", "hang-up=4"});
    const auto path = simulator.FirstLine();
    {
        SerialDevice device(path);
        EXPECT_EQ(device.Exchange({0x10}, 18), BytesOf("RV"));
        EXPECT_TRUE(device.IsGone());
    }
    EXPECT_EQ(simulator.End(0), 0);
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST(SimulatorProgramTest, RefusesBadOptionsWithStatusTwo) {
    const test::TemporaryFolder folder;
    const auto shortImage = folder.Path() / "short.bin";
    std::ofstream(shortImage) << "x";
    for (const auto& arguments :
         {std::vector<std::string>{"--pace", "never"}, {"--image", shortImage}, {"--trace", "/no/where"}}) {
        SimulatorProgram simulator(arguments);
        EXPECT_EQ(simulator.FirstLine(), "");
        EXPECT_EQ(simulator.End(0), 2);
    }
    EXPECT_EQ(SimulatorProgram({"--help"}).End(0), 0);
}

}  // namespace
}  // namespace rv52
