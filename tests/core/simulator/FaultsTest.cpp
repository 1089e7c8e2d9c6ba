#include "simulator/Faults.h"
#include "simulator/SimulatedModule.h"

#include <bit>
#include <gtest/gtest.h>
#include <tuple>

namespace rv52 {
namespace {

using namespace std::chrono_literals;
using Bytes = std::vector<std::uint8_t>;

// Identification "I", address 16, write 0x55 there and 0x66 behind, address 16, read both back.
const Bytes kSession{0x10, 0x14, 0x10, 0x00, 0x16, 0x55, 0x16, 0x66, 0x14, 0x10, 0x00, 0x15, 0x15};
// Bytes of a module that does not echo.
const std::string kSound = "49 0D | 06 | 06 | 06 | 06 | 55 | 66";

struct Outcome {
    std::string replies;  // hexadecimal, a bar between the answers that say anything
    std::string delayed;  // those of them that come late, with milliseconds
    bool hungUp = false;
};

std::string Hex(std::uint8_t byte) {
    constexpr const char* kDigits = "0123456789ABCDEF";
    return {kDigits[byte / 16], kDigits[byte % 16]};
}

Outcome Play(std::string_view fault, bool echo = false, std::uint64_t seed = 1) {
    ModuleOptions options;
    options.identification = "I";
    options.echo = echo;
    SimulatedModule module(options, fault.empty() ? Faults{} : Faults({fault}, seed));
    Outcome outcome;
    for (const auto byte : kSession) {
        const auto answer = module.Receive(byte);
        if (!answer.bytes.empty() && !outcome.replies.empty()) outcome.replies += " | ";
        for (const auto& timed : answer.bytes) {
            if (&timed != &answer.bytes.front()) outcome.replies += ' ';
            outcome.replies += Hex(timed.byte);
            if (timed.delay > 0ns)
                outcome.delayed += Hex(timed.byte) + "+" + std::to_string(timed.delay / 1ms);
        }
        if (answer.hangUp) {
            outcome.hungUp = true;
            break;
        }
    }
    return outcome;
}

TEST(FaultsTest, EachStrikesAtItsOpportunity) {
    using Row = std::tuple<std::string_view, std::string>;
    const Row rows[] = {{"", kSound},
                        {"silent", ""},
                        {"silent=5", "49 0D | 06"},
                        {"no-terminator", "49 | 06 | 06 | 06 | 06 | 55 | 66"},
                        {"no-terminator=2", kSound},
                        {"lost-reply=2", "49 0D | 06 | 06 | 06 | 55 | 66"},
                        {"refused-address=2", "49 0D | 06 | 06 | 06 | 15 | 55 | 66"},
                        {"refused-write=2", "49 0D | 06 | 06 | 15 | 06 | 55 | 11"},
                        {"not-stored=2", "49 0D | 06 | 06 | 06 | 06 | 55 | 11"},
                        {"hang-up=1", ""},
                        {"hang-up=3", "49"},
                        {"hang-up=11", "49 0D | 06 | 06"}};
    const auto unwritten = Hex(ModuleOptions().eeprom[17]);
    for (const auto& [fault, replies] : rows) {
        auto expected = replies;
        if (expected.ends_with("11")) expected.replace(expected.size() - 2, 2, unwritten);
        const auto outcome = Play(fault);
        EXPECT_EQ(outcome.replies, expected) << fault;
        EXPECT_EQ(outcome.hungUp, fault.starts_with("hang-up")) << fault;
        EXPECT_EQ(outcome.delayed, "") << fault;
    }
}

TEST(FaultsTest, LeaveTheEchoesOfALateOrLostReplyAlone) {
    EXPECT_EQ(Play("lost-reply=1", true).replies.substr(0, 10), "10 | 14 | ");
    EXPECT_EQ(Play("late-reply=3", true).delayed, "06+1010");
    EXPECT_EQ(Play("slow-reply=7", true).delayed, "66+990");
    EXPECT_EQ(Play("late-reply").delayed.substr(0, 15), "49+101006+10100");
}

TEST(FaultsTest, ComeAgainTheSameFromTheSameSeed) {
    for (const std::string_view fault : {"flipped-bit", "garbage-before-reply"}) {
        EXPECT_EQ(Play(fault, true, 7).replies, Play(fault, true, 7).replies);
        EXPECT_NE(Play(fault, true, 7).replies, Play(fault, true, 8).replies) << fault;
    }
    const auto read = Play("flipped-bit=1").replies.substr(kSound.find("55"), 2);
    const unsigned flipped = static_cast<unsigned>(std::stoi(read, nullptr, 16)) ^ 0x55U;
    EXPECT_EQ(std::popcount(flipped), 1);

    const auto garbled = Play("garbage-before-reply=1").replies;
    EXPECT_TRUE(garbled.ends_with(kSound));
    EXPECT_GT(garbled.size(), kSound.size());
}

}  // namespace
}  // namespace rv52
