#include "app/RunCommand.h"
#include "module/EepromImage.h"
#include "module/commands/Upload.h"
#include "support/PatternModule.h"
#include "support/ShownTable.h"

#include <gtest/gtest.h>
#include <tuple>

namespace rv52::test {
namespace {

constexpr auto RACE = TableType::RACE;
constexpr auto EX = TableType::EX;

// A module, and a table of the pattern on screen with its parameters.
struct ModuleAndTable : ConnectedModule {
    ModuleAndTable(const ModuleOptions& options, TableType shown, Faults faults = {})
        : ConnectedModule(options, std::move(faults)) {
        ShowAs(session, DecodeEepromImage(PatternBuffer(), shown, state.ModuleParameters));
    }

    // The table, its type and the parameters are never changed, whatever happens.
    void Upload(const std::string& outcome, Icon icon) {
        const auto kept = [&] {
            return std::tuple(session.table.Table(), state.TableType, state.TableShown,
                              state.ModuleParameters);
        };
        const auto before = kept();
        prompts.ExpectNotice(outcome, "Upload To EEPROM", icon);
        RunCommand(session, mnuUpload_Click);
        EXPECT_TRUE(prompts.Done());
        EXPECT_TRUE(kept() == before);
        EXPECT_FALSE(line.IsOpen());
        EXPECT_FALSE(shell.progressShown);
    }
};

TEST(UploadTest, ProgramsTheTableOnScreenAndVerifies) {
    for (const auto type : {RACE, EX}) {
        for (const bool echo : {false, true}) {
            const auto options = Options(type, echo);
            ModuleAndTable at(options, type);
            at.state.VerifyErrors = 3;  // of an upload before
            at.Upload(kCompleted, Icon::Warning);

            WireStory story(echo);
            story.Identification(options.identification);
            TellWriteAndVerify(story, type);
            EXPECT_EQ(Told(at.line.Trace()), story.Text());
            EXPECT_EQ(at.module.Eeprom(), Programmed(options.eeprom, type));
            const auto& shown = at.shell.progress;
            EXPECT_EQ(shown.at(0).caption + ", " + shown.at(1).caption,
                      "Programming EEPROM, Verifying EEPROM");
            for (const auto& panel : shown)
                EXPECT_EQ(panel.percents, type == EX ? Percents(183, 183) : Percents(135, 134));
        }
    }
}

TEST(UploadTest, AnExTableGivesARaceModuleItsUpperRows) {
    const auto options = Options(RACE, true);
    ModuleAndTable at(options, EX);
    at.Upload(kCompleted, Icon::Warning);
    auto expected = Programmed(options.eeprom, RACE);
    for (int index = 0; index < 128; ++index)  // MAP 16 is the fourth row of the EX region
        expected[16 + index] = Pattern(240 + 3 * 16 + index);
    EXPECT_EQ(at.module.Eeprom(), expected);
    EXPECT_EQ(at.module.Stored(), 135);
}

TEST(UploadTest, ARaceTableIsNoTableForAnExModule) {
    auto options = Options(EX, true);
    options.identification = "rv52a ex 8.1";
    // Also where TableType has lost track of the values on screen.
    for (const auto believed : {RACE, EX}) {
        ModuleAndTable at(options, RACE);
        at.state.TableType = believed;
        at.Upload("Cannot upload race data to EX version", Icon::None);
        EXPECT_EQ(at.module.Stored(), 0);
        EXPECT_EQ(at.line.Opens().size(), 1u);
    }
}

TEST(UploadTest, WithoutATableThePortStaysUntouched) {
    ModuleAndTable at(Options(RACE, true), RACE);
    HideTable(at.session);
    at.Upload("No advance table data for uploading.", Icon::Warning);
    EXPECT_TRUE(at.line.Opens().empty());
}

// Whatever goes wrong on the module's side: what was programmed, and the verdict.
TEST(UploadTest, TellsEveryFailureAndGivesTheTypeBack) {
    using Case = std::tuple<const char*, TableType, bool, long, std::string, int>;
    const Case cases[] = {
        {"slow-reply", RACE, false, 135, kCompleted, 0},
        {"silent=1", RACE, true, 0, kUnread, 0},
        {"no-terminator=1", EX, true, 0, kUnread, 0},
        {"refused-address=1", RACE, false, 0, kUnprogrammed, 0},
        {"refused-write=1", RACE, false, 0, kUnprogrammed, 0},
        {"refused-write=135", RACE, false, 134, kUnprogrammed, 0},
        {"late-reply=100", RACE, true, 98, kUnprogrammed, 0},
        // The second range of an EX write is refused, or times out, as a whole or at one of its bytes.
        {"refused-address=2", EX, false, 7, kUnprogrammed, 0},
        {"lost-reply=10", EX, true, 7, kUnprogrammed, 0},
        {"refused-write=183", EX, false, 182, kUnprogrammed, 0},
        // Programmed, and then not seen as it should be, or where it should be.
        {"refused-address=2", RACE, false, 135, kUnverified, 1},
        {"refused-address=3", EX, false, 183, kUnverified, 1},
        {"refused-address=4", EX, false, 183, kUnverified, 1},
        {"not-stored=128", RACE, false, 134, kUnverified, 1},
        {"not-stored=100", EX, false, 182, kUnverified, 1},
        {"flipped-bit=3", RACE, false, 135, kUnverified, 1},
        {"flipped-bit", EX, false, 183, kUnverified, 183},
        {"lost-reply=139", RACE, true, 135, kUnverified, 1}};
    for (const auto& [fault, module, timesOut, stored, outcome, verifyErrors] : cases) {
        for (const auto answer : {Answer::Abort, Answer::Ignore}) {
            SCOPED_TRACE(std::string(fault) + ": " + outcome);
            ModuleAndTable at(Options(module, true), EX, Faults({fault}, 5));
            if (timesOut) at.prompts.ExpectError(kTimeoutText, answer);
            const bool aborted = outcome == kUnprogrammed || outcome == kUnverified;
            at.Upload(outcome, aborted ? Icon::Information : Icon::Warning);
            EXPECT_EQ(at.module.Stored(), stored);
            EXPECT_EQ(at.state.VerifyErrors, verifyErrors);
            EXPECT_EQ(at.shell.progress.size(), outcome == kUnread ? 0u : outcome == kUnprogrammed ? 1u : 2u);
        }
    }
}

}  // namespace
}  // namespace rv52::test
