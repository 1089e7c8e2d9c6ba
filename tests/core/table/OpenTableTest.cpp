#include "core/table/FileDesk.h"
#include "platform/Failure.h"
#include "table/FileDialogs.h"

#include <utility>

namespace rv52::test {
namespace {

using OpenTableTest = FileDesk;

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
    session.table.OnRedraw([&] { ++redraws; });
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

}  // namespace
}  // namespace rv52::test
