#include "core/table/FileDesk.h"
#include "table/FileDialogs.h"

#include <tuple>

namespace rv52::test {
namespace {

class OpenTableTest : public FileDesk {};

TEST_F(OpenTableTest, AsksFirstWhenATableIsShown) {
    ShowTable(RandomTable(TableType::EX, 1));
    ExpectOpeningQuestion(Answer::Cancel);
    mnuOpenTable_Click(session);
    EXPECT_TRUE(session.state.TableShown);
    EXPECT_EQ(caption, "as it was");

    ExpectOpeningQuestion(Answer::No);
    Open("");
    ExpectHidden("as it was");

    // A save that comes to nothing does not keep the file from being opened.
    PutFile("/b.tbl", TableType::RACE);
    session.state.TableShown = true;
    for (const std::string saved : {"", "/saved.tbl"}) {
        ExpectOpeningQuestion(Answer::Yes);
        prompts.ExpectSave(saved);
        Open(saved.empty() ? "/b.tbl" : saved);
    }
    EXPECT_EQ(caption, kBase + " - saved.tbl");
    EXPECT_EQ(files["/saved.tbl"], files["/b.tbl"]);
}

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
    PutFile("/a.tbl", TableType::RACE);
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

TEST_F(OpenTableTest, AsksForEachValueThatIsNo16BitNumber) {
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

    ExpectOpeningQuestion(Answer::No);
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

TEST_F(OpenTableTest, MayOfferToCreateAMissingFile) {
    using Case = std::tuple<Answer, const char*, const char*>;
    for (const auto& [answer, path, failure] : {Case{Answer::Yes, "/new.txt", ""}, Case{Answer::No, "", ""},
                                                Case{Answer::Cancel, "", "1000 Canceled File Open"}}) {
        prompts.ExpectOpen("/new.txt");
        prompts.ExpectQuestion("/new.txt\r\nFile not found.\r\n\r\nCreate it?", "File Open", answer);
        std::string failed;
        try {
            EXPECT_EQ(FileOpen(session, "Title", "", "Create it?"), path);
        } catch (const FileDialogFailure& thrown) {
            failed = std::to_string(thrown.Number()) + " " + thrown.what();
        }
        EXPECT_EQ(failed, failure);
        EXPECT_EQ(prompts.dialogs.back().filter, "All Files (*.*)|*.*");
    }
}

}  // namespace
}  // namespace rv52::test
