#include "module/EepromImage.h"
#include "module/EepromMap.h"
#include "simulator/Faults.h"
#include "simulator/SimulatedModule.h"

#include <bit>
#include <gtest/gtest.h>

namespace rv52 {
namespace {

using namespace std::chrono_literals;

// Identification "I", address 511, write 0x10 there and 0x66 behind, which is address 0; address 511, read
// both back; and an unknown command. A command's byte is an argument where one is expected.
const std::vector<std::uint8_t> kSession{0x10, 0x14, 0xFF, 0x01, 0x16, 0x10, 0x16,
                                         0x66, 0x14, 0xFF, 0x01, 0x15, 0x15, 0x99};
// Bytes of a module that does not echo.
const std::string kSound = "49 0D | 06 | 06 | 06 | 06 | 10 | 66";

std::string Hex(std::uint8_t byte) {
    constexpr const char* kDigits = "0123456789ABCDEF";
    return {kDigits[byte / 16], kDigits[byte % 16]};
}

// What the module says: a bar between the answers, "+" and milliseconds after a byte that comes late, "!" at
// a hang-up.
std::string Play(std::string_view fault, bool echo = false, std::uint64_t seed = 1) {
    ModuleOptions options;
    options.identification = "I";
    options.echo = echo;
    SimulatedModule module(options, fault.empty() ? Faults{} : Faults({fault}, seed));
    std::string replies;
    for (const auto byte : kSession) {
        const auto answer = module.Receive(byte);
        if (!answer.bytes.empty() && !replies.empty()) replies += " | ";
        for (const auto& timed : answer.bytes) {
            if (&timed != &answer.bytes.front()) replies += ' ';
            replies += Hex(timed.byte);
            if (timed.delay > 0ns) replies += "+" + std::to_string(timed.delay / 1ms);
        }
        if (answer.hangUp) return replies + "!";
    }
    return replies;
}

TEST(SimulatedModuleTest, AnswersEveryCommandAndEachFaultStrikesAtItsOpportunity) {
    EXPECT_EQ(Play("", true),
              "10 49 0D | 14 | FF | 01 06 | 16 | 10 06 | 16 | 66 06 | 14 | FF | 01 06 | 15 10 | 15 66 | 99");
    const auto unwritten = " | " + Hex(ModuleOptions().eeprom[0]);
    const std::pair<const char*, std::string> rows[] = {
        {"", kSound},
        {"silent", ""},
        {"silent=5", "49 0D | 06"},
        {"no-terminator", "49 | 06 | 06 | 06 | 06 | 10 | 66"},
        {"no-terminator=2", kSound},
        {"lost-reply=2", "49 0D | 06 | 06 | 06 | 10 | 66"},
        {"late-reply=2", "49 0D | 06+1010 | 06 | 06 | 06 | 10 | 66"},
        {"slow-reply=7", "49 0D | 06 | 06 | 06 | 06 | 10 | 66+990"},
        {"refused-address=2", "49 0D | 06 | 06 | 06 | 15 | 10 | 66"},
        {"refused-write=2", "49 0D | 06 | 06 | 15 | 06 | 10" + unwritten},
        {"not-stored=2", "49 0D | 06 | 06 | 06 | 06 | 10" + unwritten},
        {"hang-up=1", "!"},
        {"hang-up=3", "49!"},
        {"hang-up=11", "49 0D | 06 | 06!"}};
    for (const auto& [fault, replies] : rows)
        EXPECT_EQ(Play(fault), replies) << fault;
    // The echoes of a late or lost reply are left alone.
    EXPECT_TRUE(Play("lost-reply=1", true).starts_with("10 | 14 | "));
    EXPECT_TRUE(Play("late-reply=1", true).starts_with("10 49+1010 0D | 14 | "));
}

TEST(SimulatedModuleTest, FaultsComeAgainTheSameFromTheSameSeed) {
    for (const std::string_view fault : {"flipped-bit", "garbage-before-reply"}) {
        EXPECT_EQ(Play(fault, true, 7), Play(fault, true, 7));
        EXPECT_NE(Play(fault, true, 7), Play(fault, true, 8)) << fault;
    }
    const auto read = Play("flipped-bit=1").substr(kSound.find("10"), 2);
    EXPECT_EQ(std::popcount(static_cast<unsigned>(std::stoi(read, nullptr, 16)) ^ 0x10U), 1);
    const auto garbled = Play("garbage-before-reply=1");
    EXPECT_TRUE(garbled.ends_with(kSound));
    EXPECT_GT(garbled.size(), kSound.size());
}

TEST(SimulatedModuleTest, LeavesTheWorksWithATableThatAnEngineRunsOn) {
    for (const auto type : {TableType::RACE, TableType::EX}) {
        const ModuleOptions options(type);
        EXPECT_EQ(TypeNamedIn(options.identification), type);
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
