#include "app/Commands.h"
#include "module/Download.h"
#include "module/EepromImage.h"
#include "module/Upload.h"
#include "support/PatternModule.h"
#include "table/TableDisplay.h"

#include <gtest/gtest.h>
#include <tuple>

namespace rv52::test {
namespace {

constexpr const char* kTitle = "Upload To EEPROM";

void Expect(ConnectedModule& at, const std::string& text, Icon icon) {
    at.prompts.Expect({text, kTitle, icon, Buttons::Ok}, Answer::Ok);
}

// A table of the pattern on screen, with its parameters.
void ShowPattern(ConnectedModule& at, TableType type) {
    at.session.table.Replace(DecodeEepromImage(PatternBuffer(), type, at.state.ModuleParameters));
    at.state.TableType = type;
    ShowTable(at.session);
}

// What an upload must never change.
struct Kept {
    explicit Kept(const ConnectedModule& at)
        : table(at.session.table.Table()), type(at.state.TableType), parameters(at.state.ModuleParameters) {}
    bool operator==(const Kept&) const = default;

    AdvanceTable table;
    TableType type;
    ModuleParameters parameters;
};

TEST(UploadTest, ProgramsTheTableOnScreenAndVerifies) {
    for (const auto type : {TableType::RACE, TableType::EX}) {
        for (const bool echo : {false, true}) {
            const auto options = Options(type, echo);
            ConnectedModule at(options);
            ShowPattern(at, type);
            const Kept kept(at);
            Expect(at, "Upload completed.", Icon::Warning);
            RunCommand(at.session, mnuUpload_Click);

            WireStory story(echo);
            story.Identification(options.identification);
            TellWriteAndVerify(story, type);
            EXPECT_EQ(Told(at.line.Trace()), story.Text());
            EXPECT_EQ(at.module.Eeprom(), Programmed(options.eeprom, type));
            EXPECT_EQ(Kept(at), kept);
            EXPECT_FALSE(at.line.IsOpen());
        }
    }
}

TEST(UploadTest, AnExTableGivesARaceModuleItsUpperRows) {
    const auto options = Options(TableType::RACE, true);
    ConnectedModule at(options);
    ShowPattern(at, TableType::EX);
    const Kept kept(at);
    Expect(at, "Upload completed.", Icon::Warning);
    mnuUpload_Click(at.session);
    auto expected = Programmed(options.eeprom, TableType::RACE);
    for (int index = 0; index < 128; ++index)  // MAP 16 is the fourth row of the EX region
        expected[16 + index] = Pattern(240 + 3 * 16 + index);
    EXPECT_EQ(at.module.Eeprom(), expected);
    EXPECT_EQ(at.module.Stored(), 135);
    EXPECT_EQ(Kept(at), kept);
    EXPECT_TRUE(at.state.TableShown);
}

TEST(UploadTest, ARaceTableIsNoTableForAnExModule) {
    auto options = Options(TableType::EX, true);
    options.identification = "rv52a ex 8.1";
    // Also where TableType has lost track of the values on screen.
    for (const auto believed : {TableType::RACE, TableType::EX}) {
        ConnectedModule at(options);
        ShowPattern(at, TableType::RACE);
        at.state.TableType = believed;
        const Kept kept(at);
        Expect(at, "Cannot upload race data to EX version", Icon::None);
        mnuUpload_Click(at.session);
        EXPECT_EQ(at.module.Stored(), 0);
        EXPECT_EQ(at.line.Opens().size(), 1u);
        EXPECT_EQ(Kept(at), kept);
    }
}

TEST(UploadTest, WithoutATableThePortStaysUntouched) {
    for (const bool hidden : {false, true}) {
        ConnectedModule at(Options(TableType::RACE, true));
        if (hidden) {
            ShowPattern(at, TableType::RACE);
            HideTable(at.session);
        }
        Expect(at, "No advance table data for uploading.", Icon::Warning);
        mnuUpload_Click(at.session);
        EXPECT_TRUE(at.line.Opens().empty());
    }
}

TEST(UploadTest, TellsEveryFailureAndGivesTheTypeBack) {
    const char* kUnread = "Firmware ID read failed - cannot upload.";
    const char* kUnprogrammed = "Upload aborted - EEPROM programming failed.";
    const char* kUnverified = "Upload aborted - EEPROM verification failed.";
    using Case = std::tuple<const char*, TableType, bool, const char*, Icon>;
    const Case cases[] = {{"silent=1", TableType::RACE, true, kUnread, Icon::Warning},
                          {"no-terminator=1", TableType::EX, true, kUnread, Icon::Warning},
                          {"refused-address=1", TableType::RACE, false, kUnprogrammed, Icon::Information},
                          {"late-reply=100", TableType::RACE, true, kUnprogrammed, Icon::Information},
                          {"refused-address=2", TableType::EX, false, kUnprogrammed, Icon::Information},
                          {"refused-address=2", TableType::RACE, false, kUnverified, Icon::Information},
                          {"refused-address=4", TableType::EX, false, kUnverified, Icon::Information},
                          {"not-stored", TableType::RACE, false, kUnverified, Icon::Information},
                          {"flipped-bit=135", TableType::RACE, false, kUnverified, Icon::Information},
                          {"lost-reply=139", TableType::RACE, true, kUnverified, Icon::Information}};
    for (const auto& [fault, module, timesOut, outcome, icon] : cases) {
        for (const auto answer : {Answer::Abort, Answer::Ignore}) {
            SCOPED_TRACE(std::string(fault) + ": " + outcome);
            ConnectedModule at(Options(module, true), Faults({fault}, 3));
            ShowPattern(at, TableType::EX);
            const Kept kept(at);
            if (timesOut) at.prompts.ExpectError(kTimeoutText, answer);
            Expect(at, outcome, icon);
            mnuUpload_Click(at.session);
            EXPECT_TRUE(at.prompts.Done());
            EXPECT_EQ(Kept(at), kept);
            EXPECT_TRUE(at.state.TableShown);
            EXPECT_FALSE(at.line.IsOpen());
            EXPECT_FALSE(at.shell.progressShown);
        }
    }
}

// A box that cannot even be shown, and is aborted: the type comes back all the same.
TEST(UploadTest, AnAbandonedUploadGivesTheTypeBack) {
    ConnectedModule at(Options(TableType::RACE, true));
    ShowPattern(at, TableType::EX);
    at.prompts.ExpectError("no screen", Answer::Abort);
    bool failed = false;
    at.prompts.whileOpen = [&] {
        if (!std::exchange(failed, true)) throw Failure("no screen");
    };
    mnuUpload_Click(at.session);
    EXPECT_TRUE(failed);
    EXPECT_EQ(at.state.TableType, TableType::EX);
}

TEST(UploadTest, EscapeStopsOnlyTheVerify) {
    using Case = std::tuple<bool, std::size_t, const char*>;
    const char* kDone = "Upload completed.";
    const char* kUnverified = "Upload aborted - EEPROM verification failed.";
    // Closing the window waits for both.
    for (const auto& [closing, panel, outcome] :
         {Case{false, 1, kDone}, Case{false, 2, kUnverified}, Case{true, 1, kDone}, Case{true, 2, kDone}}) {
        ConnectedModule at(Options(TableType::RACE, true));
        ShowPattern(at, TableType::RACE);
        Expect(at, outcome, outcome == kDone ? Icon::Warning : Icon::Information);
        if (closing)
            at.prompts.Expect(
                {"Save advance table before exiting?", "Exit Program", Icon::Warning, Buttons::YesNoCancel},
                Answer::No);
        bool once = false;
        at.line.OnYield([&] {
            if (at.shell.progress.size() != panel || std::exchange(once, true)) return;
            closing ? RequestExit(at.session) : EscapePressed(at.session);
        });
        RunCommand(at.session, mnuUpload_Click);
        EXPECT_TRUE(once);
        EXPECT_EQ(at.module.Stored(), 135);
        EXPECT_FALSE(at.state.AbortRequested);
        EXPECT_EQ(at.shell.closed, closing);
    }
}

}  // namespace
}  // namespace rv52::test
