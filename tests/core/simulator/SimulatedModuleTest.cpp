#include "module/EepromImage.h"
#include "module/EepromMap.h"
#include "simulator/SimulatedModule.h"

#include <gtest/gtest.h>
#include <tuple>

namespace rv52 {
namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes Exchange(SimulatedModule& module, const Bytes& sent) {
    Bytes replies;
    for (const auto byte : sent)
        for (const auto& timed : module.Receive(byte).bytes)
            replies.push_back(timed.byte);
    return replies;
}

SimulatedModule ModuleThatEchoes(bool echo) {
    ModuleOptions options;
    options.identification = "AB";
    options.echo = echo;
    options.eeprom[511] = 0x51;
    options.eeprom[0] = 0x50;
    return SimulatedModule(options);
}

TEST(SimulatedModuleTest, AnswersEveryCommandInBothEchoModes) {
    using Row = std::tuple<Bytes, Bytes, Bytes>;
    const Row rows[] = {
        {{0x10}, {'A', 'B', 0x0D}, {0x10, 'A', 'B', 0x0D}},
        {{0x14, 0xFF, 0x01}, {0x06}, {0x14, 0xFF, 0x01, 0x06}},
        // Counting on by one goes around at the end of the memory.
        {{0x15, 0x15}, {0x51, 0x50}, {0x15, 0x51, 0x15, 0x50}},
        // A command's byte is an argument where one is expected.
        {{0x14, 0x15, 0x00, 0x16, 0x10}, {0x06, 0x06}, {0x14, 0x15, 0x00, 0x06, 0x16, 0x10, 0x06}},
        {{0x99}, {}, {0x99}}};
    auto plain = ModuleThatEchoes(false);
    auto echoing = ModuleThatEchoes(true);
    for (const auto& [sent, replies, echoed] : rows) {
        EXPECT_EQ(Exchange(plain, sent), replies);
        EXPECT_EQ(Exchange(echoing, sent), echoed);
    }
    EXPECT_EQ(plain.Eeprom()[0x15], 0x10);
    EXPECT_EQ(plain.Stored(), 1);
}

TEST(SimulatedModuleTest, ForgetsAHalfReceivedCommandWhenRestarted) {
    auto module = ModuleThatEchoes(false);
    Exchange(module, {0x14, 0x10});
    module.Restart();
    EXPECT_EQ(Exchange(module, {0x10}), (Bytes{'A', 'B', 0x0D}));
}

TEST(SimulatedModuleTest, LeavesTheWorksWithATableThatAnEngineRunsOn) {
    for (const auto type : {TableType::RACE, TableType::EX}) {
        const ModuleOptions options(type);
        EXPECT_EQ(TypeNamedIn(options.identification), type);
        EXPECT_NE(options.identification.find("RV52A"), std::string::npos);

        EepromBuffer buffer{};
        for (int index = 0; index <= EepromMap::kExTableLast; ++index)
            buffer[static_cast<std::size_t>(index)] = options.eeprom[AddressOf(index).value];
        ModuleParameters parameters;
        const auto table = DecodeEepromImage(buffer, type, parameters);
        for (const double degrees : table.GetValues())
            EXPECT_TRUE(degrees >= 5 && degrees <= 42);
        EXPECT_EQ(parameters.RPMLimit, 6200);
    }
}

}  // namespace
}  // namespace rv52
