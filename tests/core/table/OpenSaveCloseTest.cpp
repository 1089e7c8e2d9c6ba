#include "core/SessionTest.h"
#include "core/table/RandomTable.h"
#include "platform/Failure.h"
#include "table/TableFile.h"
#include "table/commands/FileQuestions.h"
#include "table/commands/OpenTable.h"
#include "table/commands/SaveAndCloseTable.h"

#include <functional>
#include <utility>

namespace rv52::test {
namespace {

const std::string kBase = "Corvane RV52 Version 8.1";

ModuleParameters SomeParameters() {
    return {.InitialTiming = -2, .RPMLimit = 7250, .FixedLimFlag = true};
}

// For the commands on table files. The caption tells whether a command set it.
class OpenSaveCloseTest : public SessionTest {
 protected:
    using Expectations = std::function<void()>;

    OpenSaveCloseTest() {
        caption = "as it was";
        session.sheet.SetUp(TableType::RACE);
    }

    // A table on screen, as a download leaves it.
    void ShowTable(const AdvanceTable& table) {
        session.table.Replace(table);
        session.state.TableType = table.Type();
        session.state.TableShown = test.view.shown = true;
    }

    void PutFile(const std::string& path, TableType type) {
        files[path] = FormatTableFile(RandomTable(type, 1), SomeParameters());
    }

    void ExpectOpeningQuestion(Answer answer) {
        prompts.ExpectQuestion("Save advance table before opening file?", "Open File", answer);
    }

    // The commands, with the path that the user picks and the boxes expected after that.
    void Open(const std::string& path, const Expectations& expect = {}) {
        prompts.ExpectOpen(path);
        if (expect) expect();
        mnuOpenTable_Click(session);
    }
    void Save(const std::string& path, const Expectations& expect = {}) {
        prompts.ExpectSave(path);
        if (expect) expect();
        mnuSaveTable_Click(session);
    }

    void ExpectHidden(const std::string& under) {
        EXPECT_FALSE(session.state.TableShown || test.view.shown);
        EXPECT_EQ(caption, under);
    }
};

using OpenTableTest = OpenSaveCloseTest;
using SaveTableTest = OpenSaveCloseTest;

TEST_F(OpenTableTest, KeepsTheParametersOfAFileWhoseTableItCannotShow) {
    const auto kept = RandomTable(TableType::RACE, 5);
    session.table.Replace(kept);
    PutFile("/ex.tbl", TableType::EX);
    PutFile("/race.tbl", TableType::RACE);
    const auto good = files;
    const auto refuse = [&](const std::string& path, TableType type, const std::string& text) {
        Open(path, [&] { prompts.ExpectNotice(text, "File Open", Icon::Critical); });
        ExpectHidden(kBase);
        EXPECT_EQ(session.state.TableType, type);
        EXPECT_EQ(parameters, SomeParameters());
        EXPECT_EQ(session.table.Table(), kept) << "the values stay as they are";
        files = good;
    };
    files.erase("/program/RV52_EX_Chart.oc3");
    refuse("/ex.tbl", TableType::EX, "Chart template file RV52_EX_Chart.oc3 not found.");
    files["/program/RV52_Chart.oc3"] = "damaged";
    refuse("/race.tbl", TableType::RACE, "Chart template file RV52_Chart.oc3 not found.");
    files["/ex.tbl"].replace(files["/ex.tbl"].find("7500"), 4, "7600");
    refuse("/ex.tbl", TableType::EX, "Error loading /ex.tbl");

    // Redrawing is not left suspended, and the table that was closed can still be saved, as what it is.
    int redraws = 0;
    const auto listening = session.table.OnRedraw([&] { ++redraws; });
    session.table.Touch();
    EXPECT_EQ(redraws, 1);
    Save("/kept.tbl");
    Open("/kept.tbl");
    EXPECT_EQ(session.table.Table(), kept);
}

TEST_F(OpenTableTest, ReportsWhatItCannotRead) {
    files["/a.tbl"];
    test.files.failReads = true;
    Open("/a.tbl", [&] {
        prompts.ExpectError("cannot read /a.tbl", Answer::Retry);
        prompts.ExpectError("cannot read /a.tbl", Answer::Abort);
    });
    ExpectHidden("as it was");
    EXPECT_EQ(parameters, ModuleParameters{});

    // Going on without the content: nothing is stated, and there is no data block.
    Open("/a.tbl", [&] {
        prompts.ExpectError("cannot read /a.tbl", Answer::Ignore);
        prompts.ExpectNotice("Chart template file RV52_Chart.oc3 not found.", "File Open", Icon::Critical);
    });
    EXPECT_EQ(parameters.RPMLimit, 5700);
    EXPECT_EQ(caption, kBase);
}

TEST_F(OpenTableTest, AsksFirstAndForEachValueThatIsNo16BitNumber) {
    PutFile("/a.tbl", TableType::RACE);
    files["/a.tbl"].insert(0, "!VSSFreq: 70000\r\n!RearOffset: -40000\r\n");
    const std::string vss = "The value of !VSSFreq is no 16-bit whole number.";
    Open("/a.tbl", [&] {
        prompts.ExpectError(vss, Answer::Retry);
        prompts.ExpectError(vss, Answer::Ignore);
        prompts.ExpectError("The value of !RearOffset is no 16-bit whole number.", Answer::Ignore);
    });
    EXPECT_TRUE(session.state.TableShown);
    EXPECT_EQ(parameters, SomeParameters());

    ExpectOpeningQuestion(Answer::Cancel);
    mnuOpenTable_Click(session);
    EXPECT_TRUE(session.state.TableShown);
    // A save that comes to nothing does not keep a file from being opened.
    ExpectOpeningQuestion(Answer::Yes);
    prompts.ExpectSave("");
    Open("/a.tbl", [&] { prompts.ExpectError(vss, Answer::Abort); });
    EXPECT_FALSE(session.state.TableShown);
    EXPECT_EQ(parameters.RPMLimit, 5700) << "what was assumed before the value stays";
}

TEST_F(OpenTableTest, OffersAMissingFileAgain) {
    const MessageBox box{"/none.tbl\r\nFile not found.", "File Open", Icon::Warning, Buttons::RetryCancel};
    const auto expectBoxes = [&](Answer answer) {
        prompts.Expect(box, Answer::Cancel);
        prompts.ExpectError("Canceled File Open", Answer::Retry);
        prompts.ExpectOpen("/none.tbl");
        prompts.Expect(box, Answer::Retry);
        prompts.ExpectOpen("/none.tbl");
        prompts.Expect(box, Answer::Cancel);
        prompts.ExpectError("Canceled File Open", answer);
    };
    Open("/none.tbl", [&] { expectBoxes(Answer::Abort); });
    ExpectHidden("as it was");
    // A file of the command line is met by the same boxes, and choosing again brings the dialog.
    expectBoxes(Answer::Ignore);
    OpenTableFile(session, "/none.tbl");
    ExpectHidden("as it was");
}

// The path, or what stopped the dialog.
std::string Outcome(const std::function<std::string()>& dialog) {
    try {
        return dialog();
    } catch (const FileDialogFailure& failure) {
        return failure.Source() + " " + std::to_string(failure.Number()) + ": " + failure.what();
    }
}

TEST_F(OpenTableTest, ItsDialogMayOfferToCreateAMissingFileAndFailsWithANumber) {
    const std::pair<Answer, const char*> cases[] = {
        {Answer::Yes, "/new.txt"}, {Answer::No, ""}, {Answer::Cancel, "File Open 1000: Canceled File Open"}};
    for (const auto& [answer, outcome] : cases) {
        prompts.ExpectOpen("/new.txt");
        prompts.ExpectQuestion("/new.txt\r\nFile not found.\r\n\r\nCreate it?", "File Open", answer);
        EXPECT_EQ(Outcome([&] { return FileOpen(session, "Title", "", "Create it?"); }), outcome);
        EXPECT_EQ(prompts.dialogs.back().filter, "All Files (*.*)|*.*");
    }
    prompts.whileOpen = [&] {
        prompts.whileOpen = {};
        throw Failure("no display");
    };
    prompts.ExpectError("no display", Answer::Abort);
    EXPECT_EQ(Outcome([&] { return FileSave(session, "Title", "", ""); }),
              "File Save 1001: Aborted File Save");
}

TEST_F(SaveTableTest, OpensAsTheSameTable) {
    for (const auto type : {TableType::RACE, TableType::EX}) {
        const bool race = type == TableType::RACE;
        const auto table = RandomTable(type, 3);
        ShowTable(table);
        parameters = SomeParameters();
        parameters.FlagByte = 0x40;
        // A transfer to a module of the other type may have left its type behind.
        session.state.TableType = race ? TableType::EX : TableType::RACE;
        Save("/home/tuner/street.tbl");
        EXPECT_TRUE(session.state.TableShown);
        EXPECT_EQ(parameters.FlagByte, 0x40);
        EXPECT_EQ(caption, kBase + " - street.tbl");

        parameters = {};
        session.table.Replace(AdvanceTable(TableType::RACE));
        session.chart.ShowLabel({Column(1), Row(1)}, "7.0");
        session.sheet.SetEditable(!race);
        session.state.TableShown = test.view.shown = false;
        test.shell.placements = test.files.reads = 0;
        if (race)
            Open("/home/tuner/street.tbl");
        else
            OpenTableFile(session, "/home/tuner/street.tbl");  // as from the command line
        EXPECT_EQ(session.table.Table(), table);
        EXPECT_EQ(parameters, SomeParameters());
        const std::string screen =
            race ? "RACE shown, 8 rows, at 0 0, editable, chart editable, template of 8: "
                 : "EX shown, 11 rows, at 0 0, fixed, chart fixed, template of 11: ";
        EXPECT_EQ(OnScreen(test), screen + kBase + " - street.tbl");
        EXPECT_EQ(test.shell.placements, 1);
        EXPECT_EQ(test.files.reads, 2) << "the table file and the template, each once";
        files.erase("/home/tuner/street.tbl");
    }
    const auto& dialogs = prompts.dialogs;
    EXPECT_EQ(dialogs.at(0).title + "; " + dialogs.at(1).title, "Save File; Open File");
    for (const auto& dialog : dialogs)
        EXPECT_EQ(dialog.filter, "Advance table files (*.tbl)|*.tbl");
}

TEST_F(SaveTableTest, NeedsATableAndReplacesAFileOnlyWhenTold) {
    prompts.ExpectNotice("No advance table data for saving.", "File Save");
    mnuSaveTable_Click(session);

    ShowTable(RandomTable(TableType::RACE, 1));
    files["/old.tbl"] = "old";
    const MessageBox box{"/old.tbl\r\nThis file already exists.\r\n\r\nReplace existing file?", "File Save",
                         Icon::Warning, Buttons::YesNoCancel, Answer::No};
    Save("/old.tbl", [&] {
        prompts.Expect(box, Answer::No);
        prompts.ExpectSave("/old.tbl");
        prompts.Expect(box, Answer::Cancel);
        prompts.ExpectError("Canceled File Save", Answer::Abort);
    });
    EXPECT_EQ(files["/old.tbl"], "old");
    EXPECT_EQ(caption, "as it was");

    Save("/old.tbl", [&] { prompts.Expect(box, Answer::Yes); });
    EXPECT_EQ(files["/old.tbl"], FormatTableFile(session.table.Table(), parameters));
    EXPECT_EQ(caption, kBase + " - old.tbl");
}

TEST_F(SaveTableTest, AFailedSaveClosesTheTableUnlessTold) {
    ShowTable(RandomTable(TableType::RACE, 1));
    test.files.failWrites = true;
    prompts.whileOpen = [&] { EXPECT_TRUE(session.state.TableShown); };
    for (const auto close : {Answer::Cancel, Answer::No}) {
        EXPECT_TRUE(session.state.TableShown);
        EXPECT_EQ(caption, "as it was");
        Save("/a.tbl", [&] {
            prompts.ExpectNotice("Error saving /a.tbl", "File Save", Icon::Critical);
            prompts.ExpectQuestion("Save advance table before closing file?", "Close File", close);
        });
    }
    ExpectHidden(kBase);
    EXPECT_FALSE(files.contains("/a.tbl"));
    mnuCloseTable_Click(session);  // without a table there is nothing to ask

    // The closed table is still there to be saved.
    EXPECT_EQ(session.table.Table(), RandomTable(TableType::RACE, 1));
    prompts.whileOpen = {};
    test.files.failWrites = false;
    Save("/b.tbl");
    ExpectHidden(kBase + " - b.tbl");
    EXPECT_TRUE(files.contains("/b.tbl"));
}

TEST_F(SaveTableTest, TheCaptionShowsTheLast60CharactersOfAName) {
    session.table.Replace(AdvanceTable(TableType::RACE));
    std::string sixty;
    for (int character = 0; character < 60; ++character)
        sixty += "点";
    const std::pair<std::string, std::string> cases[] = {{"/home/a folder/" + sixty, " - " + sixty},
                                                         {"/home/x" + sixty, " - ..." + sixty},
                                                         {"/home/a\\b.tbl", " - a\\b.tbl"},
                                                         {"relative.tbl", " - relative.tbl"}};
    for (const auto& [path, shown] : cases) {
        Save(path);
        EXPECT_EQ(caption, kBase + shown);
    }
}

}  // namespace
}  // namespace rv52::test
