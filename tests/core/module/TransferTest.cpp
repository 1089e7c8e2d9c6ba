#include "app/RunCommand.h"
#include "module/EepromImage.h"
#include "module/commands/Download.h"
#include "module/commands/Upload.h"
#include "support/PatternModule.h"
#include "support/ShownTable.h"

#include <gtest/gtest.h>
#include <tuple>

namespace rv52::test {
namespace {

constexpr auto RACE = TableType::RACE;
constexpr auto EX = TableType::EX;
constexpr const char* kDownloads = "Download From EEPROM";
const std::string kBase = "Corvane RV52 Version 8.1";

// How many percentages a progress panel has shown, the middle one and the last.
auto Course(const RecordingShell::Progress& panel) {
    return std::tuple(panel.percents.size(), panel.percents[panel.percents.size() / 2],
                      panel.percents.back());
}

TEST(DownloadTest, BringsTableAndParametersOnScreen) {
    for (const auto type : {RACE, EX}) {
        for (const bool echo : {false, true}) {
            SCOPED_TRACE(testing::Message() << ToText(type) << ", echo " << echo);
            const bool ex = type == EX;
            const auto options = PatternModule(type, echo);
            ConnectedModule at(options);
            at.state.TableType = ex ? RACE : EX;
            at.state.EepromBuffer.fill(0xEE);
            at.prompts.ExpectNotice("Firmware ID: " + options.identification, kDownloads);
            RunCommand(at.session, mnuDownload_Click);
            EXPECT_FALSE(at.line.IsOpen() || at.shell.progressShown);

            WireStory story(echo);
            story.Identification(options.identification);
            TellRead(story, type);
            EXPECT_EQ(Told(at.line.Trace()), story.Text());
            EepromBuffer read{};
            for (int index = Readable(type).first; index <= Readable(type).last; ++index)
                read.at(static_cast<std::size_t>(index)) = Pattern(index);
            EXPECT_EQ(at.state.EepromBuffer, read);
            EXPECT_EQ(at.shell.progress.at(0).caption, "Reading EEPROM");
            EXPECT_EQ(Course(at.shell.progress.at(0)), std::tuple(ex ? 289u : 136u, 50, 100));

            const auto& table = at.session.table.Table();
            EXPECT_EQ(table.Type(), type);
            ForEachCell(type, [&](Cell cell) {
                const int index = (ex ? 240 : 0) + 16 * (RowCount(type) - cell.row) + cell.column - 1;
                EXPECT_EQ(table.GetCell(cell), 0.176 * Pattern(index));
            });
            EXPECT_EQ(at.state.ModuleParameters,
                      (ModuleParameters{0, 1, 2, 5700, 1424, false, false, false, true, 0xB6}));
            EXPECT_EQ(at.session.sheet.Text({GridRow(1), GridColumn(0)}), ex ? "10" : "16");
            EXPECT_EQ(at.session.sheet.Text({GridRow(1), GridColumn(1)}), ex ? "28.5" : "0.5");
            EXPECT_EQ(OnScreen(at.connected.test),
                      (ex ? "EX shown, 11 rows, at 0 0, fixed, chart fixed, template of 11: "
                          : "RACE shown, 8 rows, at 0 0, editable, chart editable, template of 8: ") +
                          kBase + " - Downloaded Data");
            EXPECT_EQ(at.shell.placements, 1);
        }
    }
}

// The last box says what went wrong; the screen is empty, the parameters are the old ones, the buffer is
// clear.
TEST(DownloadTest, TellsEveryFailure) {
    const std::string unread = "Firmware ID read failed - cannot download.";
    const std::string failed = "Download failed.";
    for (const auto& [fault, timesOut, last] : {std::tuple("silent=1", true, unread),
                                                {"no-terminator=1", true, unread},
                                                {"refused-address=1", false, failed},
                                                {"lost-reply=2", true, failed},
                                                {"late-reply=290", true, failed}}) {
        for (const auto answer : {Answer::Abort, Answer::Ignore}) {
            SCOPED_TRACE(fault);
            ConnectedModule at(Options(EX, true), Faults({fault}, 3));
            ShowAs(at.session, FlatTable(RACE, 12.5));
            at.state.EepromBuffer.fill(0x11);
            const auto parameters = at.state.ModuleParameters;
            at.prompts.ExpectQuestion("Save advance table before downloading?", kDownloads, Answer::No);
            if (last == failed) at.prompts.ExpectNotice("Firmware ID: RV52A EX SIM 8.1", kDownloads);
            if (timesOut) at.prompts.ExpectError(kTimeoutText, answer);
            at.prompts.ExpectNotice(last, kDownloads);
            mnuDownload_Click(at.session);
            EXPECT_EQ(at.shell.caption, kBase + " - Data Buffer Empty");
            EXPECT_FALSE(at.state.TableShown || at.connected.test.view.shown);
            EXPECT_FALSE(at.line.IsOpen() || at.shell.progressShown);
            EXPECT_EQ(at.state.ModuleParameters, parameters);
            EXPECT_EQ(at.state.TableType, last == failed ? EX : RACE);
            EXPECT_EQ(at.state.EepromBuffer, EepromBuffer{});
        }
    }
}

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
        EXPECT_TRUE(kept() == before);
        EXPECT_FALSE(line.IsOpen() || shell.progressShown);
    }
};

TEST(UploadTest, ProgramsTheTableOnScreenAndVerifies) {
    for (const auto type : {RACE, EX}) {
        for (const bool echo : {false, true}) {
            SCOPED_TRACE(testing::Message() << ToText(type) << ", echo " << echo);
            const auto options = Options(type, echo);
            ModuleAndTable at(options, type);
            at.state.VerifyErrors = 3;  // of an upload before
            at.Upload(kCompleted, Icon::Warning);

            WireStory story(echo);
            story.Identification(options.identification);
            TellWriteAndVerify(story, type);
            EXPECT_EQ(Told(at.line.Trace()), story.Text());
            EXPECT_EQ(at.module.Eeprom(), Programmed(options.eeprom, type));
            std::string captions;
            for (const auto& panel : at.shell.progress) {
                captions += panel.caption + ", ";
                EXPECT_EQ(Course(panel), type == EX ? std::tuple(184u, 50, 99) : std::tuple(136u, 50, 100));
            }
            EXPECT_EQ(captions, "Programming EEPROM, Verifying EEPROM, ");
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
        SCOPED_TRACE(ToText(believed));
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
