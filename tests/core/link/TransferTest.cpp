#include "link/EepromTransfer.h"
#include "support/PatternModule.h"

#include <cmath>
#include <gtest/gtest.h>
#include <tuple>

namespace rv52::test {
namespace {

using namespace std::chrono_literals;

constexpr TableType kTypes[] = {TableType::RACE, TableType::EX};

void ExpectAtRest(const ConnectedModule& at) {
    EXPECT_FALSE(at.line.IsOpen());
    EXPECT_FALSE(at.shell.progressShown);
}

TEST(TransferTest, ShowsItsProgressByteByByte) {
    const auto percents = [](int last, int full) {
        std::vector<int> shown{0};
        for (int position = 0; position <= last; ++position)
            shown.push_back(static_cast<int>(std::nearbyint(100.0 * position / full)));  // halves to even
        return shown;
    };

    for (const auto type : kTypes) {
        const bool ex = type == TableType::EX;
        ConnectedModule at(Options(type, true));
        ReadEEPROMData(at.session);
        WriteEEPROMData(at.session);
        const auto& shown = at.shell.progress;
        ASSERT_EQ(shown.size(), 3u);
        EXPECT_EQ(shown[0].caption, "Reading EEPROM");
        EXPECT_EQ(shown[1].caption, "Programming EEPROM");
        EXPECT_EQ(shown[2].caption, "Verifying EEPROM");
        EXPECT_EQ(shown[0].percents, ex ? percents(287, 287) : percents(134, 134));
        for (const int transfer : {1, 2}) {
            const auto& written = shown[static_cast<std::size_t>(transfer)].percents;
            EXPECT_EQ(written, ex ? percents(182, 183) : percents(134, 134));
            EXPECT_EQ(written.back(), ex ? 99 : 100);
        }
    }
}

TEST(TransferTest, EscapeDuringProgrammingDoesNothing) {
    for (const auto type : kTypes) {
        ConnectedModule at(Options(type, true));
        at.line.OnYield([&] {
            if (at.shell.progress.size() == 1) at.state.AbortRequested = true;
        });
        at.state.EepromBuffer = PatternBuffer();
        WriteEEPROMData(at.session);
        EXPECT_TRUE(at.state.CommOK);
        EXPECT_EQ(at.state.VerifyErrors, 0);
    }
}

// Whatever goes wrong on the module's side: what was programmed, whether it was looked at, and the verdict.
TEST(TransferTest, TellsEveryFailingWrite) {
    using Case = std::tuple<const char*, TableType, bool, long, bool, int>;
    const Case cases[] = {
        {"refused-address=1", TableType::RACE, false, 0, false, 0},
        {"refused-address=1", TableType::EX, false, 0, false, 0},
        {"lost-reply=1", TableType::EX, true, 0, false, 0},
        {"refused-write=1", TableType::RACE, false, 0, false, 0},
        {"refused-write=135", TableType::RACE, false, 134, false, 0},
        {"refused-write=7", TableType::EX, false, 6, false, 0},
        {"lost-reply=136", TableType::RACE, true, 135, false, 0},
        {"late-reply=100", TableType::EX, true, 98, false, 0},
        // The second range of an EX write is refused, or times out, as a whole or at one of its bytes.
        {"refused-address=2", TableType::EX, false, 7, false, 0},
        {"lost-reply=9", TableType::EX, true, 7, false, 0},
        {"lost-reply=10", TableType::EX, true, 8, false, 0},
        {"refused-write=8", TableType::EX, false, 7, false, 0},
        {"refused-write=183", TableType::EX, false, 182, false, 0},
        // Programmed, and then not seen as it should be, or where it should be.
        {"refused-address=2", TableType::RACE, false, 135, true, 1},
        {"refused-address=3", TableType::EX, false, 183, true, 1},
        {"refused-address=4", TableType::EX, false, 183, true, 1},
        {"not-stored=128", TableType::RACE, false, 134, true, 1},
        {"not-stored=100", TableType::EX, false, 182, true, 1},
        {"flipped-bit=3", TableType::RACE, false, 135, true, 1},
        {"flipped-bit", TableType::EX, false, 183, true, 183}};
    for (const auto& [fault, type, timesOut, stored, acknowledged, verifyErrors] : cases) {
        for (const auto answer : {Answer::Abort, Answer::Ignore}) {
            SCOPED_TRACE(std::string(fault) + " " + std::string(ToText(type)));
            ConnectedModule at(Options(type, true), Faults({fault}, 5));
            at.state.EepromBuffer = PatternBuffer();
            at.state.CommOK = true;
            if (timesOut) at.prompts.ExpectError(kTimeoutText, answer);
            WriteEEPROMData(at.session);
            EXPECT_EQ(at.module.Stored(), stored);
            EXPECT_EQ(at.state.CommOK, acknowledged);
            EXPECT_EQ(at.shell.progress.size(), acknowledged ? 2u : 1u);
            EXPECT_EQ(at.state.VerifyErrors, verifyErrors);
            ExpectAtRest(at);
        }
    }
}

TEST(TransferTest, AFailedReadSaysSo) {
    using Case = std::tuple<const char*, bool>;
    for (const auto& [fault, timesOut] :
         {Case{"refused-address=1", false}, Case{"lost-reply=1", true}, Case{"lost-reply=2", true},
          Case{"late-reply=289", true}, Case{"lost-reply=289", true}}) {
        for (const auto answer : {Answer::Abort, Answer::Ignore}) {
            SCOPED_TRACE(fault);
            ConnectedModule at(Options(TableType::EX, true), Faults({fault}, 1));
            at.state.CommOK = true;
            if (timesOut) at.prompts.ExpectError(kTimeoutText, answer);
            ReadEEPROMData(at.session);
            EXPECT_FALSE(at.state.CommOK);
            ExpectAtRest(at);
        }
    }
}

TEST(TransferTest, ASlowModuleIsAGoodOne) {
    ConnectedModule at(Options(TableType::RACE, true), Faults({"slow-reply"}, 1));
    at.state.EepromBuffer = PatternBuffer();
    WriteEEPROMData(at.session);
    EXPECT_TRUE(at.state.CommOK);
    EXPECT_EQ(at.state.VerifyErrors, 0);
}

}  // namespace
}  // namespace rv52::test
