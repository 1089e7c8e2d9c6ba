#include "support/IdleLine.h"
#include "support/TestSession.h"
#include "table/FileCommands.h"
#include "table/FileDialogs.h"
#include "table/TableFile.h"

#include <functional>
#include <gtest/gtest.h>
#include <random>
#include <tuple>

namespace rv52 {
namespace {

const std::string kBase = "Corvane RV52 Version 8.1";

AdvanceTable SomeTable(TableType type, unsigned seed = 1) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> degrees(0, 45);
    AdvanceTable table(type);
    ForEachCell(type, [&](Cell cell) { table.SetCell(cell, degrees(random)); });
    return table;
}

ModuleParameters SomeParameters() {
    ModuleParameters parameters;
    parameters.InitialTiming = -2;
    parameters.RPMLimit = 7250;
    parameters.FixedLimFlag = true;
    return parameters;
}

class FileCommandsTest : public testing::Test {
 protected:
    using Expectations = std::function<void()>;

    FileCommandsTest() {
        session.shell.SetCaption("as it was");
        session.sheet.SetUp(TableType::RACE);
    }

    // A table on screen, as a download leaves it.
    void ShowTable(const AdvanceTable& table) {
        session.table.Replace(table);
        session.state.TableType = table.Type();
        session.state.TableShown = test.view.shown = true;
    }

    void PutFile(const std::string& path, TableType type) {
        test.files.contents[path] = FormatTableFile(SomeTable(type), SomeParameters());
    }

    void ExpectQuestion(const char* text, const char* title, Answer answer) {
        test.prompts.Expect({text, title, Icon::Warning, Buttons::YesNoCancel}, answer);
    }
    void ExpectOpeningQuestion(Answer answer) {
        ExpectQuestion("Save advance table before opening file?", "Open File", answer);
    }
    void ExpectClosingQuestion(Answer answer) {
        ExpectQuestion("Save advance table before closing file?", "Close File", answer);
    }
    void ExpectReplaceQuestion(const std::string& path, Answer answer) {
        test.prompts.Expect({path + "\r\nThis file already exists.\r\n\r\nReplace existing file?",
                             "File Save", Icon::Warning, Buttons::YesNoCancel, Answer::No},
                            answer);
    }
    void ExpectRefusal(const std::string& text, const char* title) {
        test.prompts.Expect({text, title, Icon::Critical, Buttons::Ok}, Answer::Ok);
    }

    void ExpectFailure(const Expectations& dialog, int number, const std::string& what) {
        try {
            dialog();
            ADD_FAILURE() << "did not fail";
        } catch (const FileDialogFailure& failure) {
            EXPECT_EQ(failure.Number(), number);
            EXPECT_EQ(failure.what(), what);
            EXPECT_TRUE(what.ends_with(" " + failure.Source())) << failure.Source();
        }
    }

    // The commands, with the path that the user picks and the boxes expected after that.
    void Open(
        const std::string& path, const Expectations& expect = [] {}) {
        test.prompts.ExpectOpen(path);
        expect();
        mnuOpenTable_Click(session);
    }
    void Save(
        const std::string& path, const Expectations& expect = [] {}) {
        test.prompts.ExpectSave(path);
        expect();
        mnuSaveTable_Click(session);
    }

    void ExpectHidden() {
        EXPECT_FALSE(session.state.TableShown);
        EXPECT_FALSE(test.view.shown);
    }

    test::IdleLine line;
    test::TestSession test{line};
    Session& session = test.session;
    std::string& caption = test.shell.caption;
};

// Open

TEST_F(FileCommandsTest, OpenPutsTheFilesTableOnScreen) {
    for (const auto type : {TableType::RACE, TableType::EX}) {
        session.state.TableShown = false;
        PutFile("/home/tuner/street.tbl", type);
        session.chart.ShowLabel({1, 1}, "7.0");
        test.shell.placements = test.files.reads = 0;
        session.sheet.SetEditable(type == TableType::EX);
        Open("/home/tuner/street.tbl");

        EXPECT_EQ(session.table.Table(), SomeTable(type));
        EXPECT_EQ(session.state.TableType, type);
        EXPECT_EQ(session.state.ModuleParameters, SomeParameters());
        EXPECT_TRUE(session.state.TableShown && test.view.shown);
        EXPECT_EQ(caption, kBase + " - street.tbl");
        EXPECT_EQ(session.sheet.RowCount(), RowCount(type) + 1);
        EXPECT_EQ(session.sheet.Cursor(), (GridCell{0, 0}));
        EXPECT_EQ(session.sheet.Editable(), type == TableType::RACE);
        EXPECT_EQ(session.chart.Interactive(), type == TableType::RACE);
        EXPECT_EQ(session.chart.Template()->rows, RowCount(type));
        EXPECT_FALSE(session.chart.Label().shown);
        EXPECT_EQ(test.shell.placements, 1);
        EXPECT_EQ(test.files.reads, 2) << "the table file and the template, each once";
    }
    EXPECT_EQ(test.prompts.dialogs.at(0).title, "Open File");
    EXPECT_EQ(test.prompts.dialogs.at(0).filter, "Advance table files (*.tbl)|*.tbl");
}

TEST_F(FileCommandsTest, OpenAsksFirstWhenATableIsShown) {
    ShowTable(SomeTable(TableType::EX));
    ExpectOpeningQuestion(Answer::Cancel);
    mnuOpenTable_Click(session);
    EXPECT_TRUE(session.state.TableShown);
    EXPECT_EQ(caption, "as it was");

    ExpectOpeningQuestion(Answer::No);
    Open("");
    ExpectHidden();
    EXPECT_EQ(caption, "as it was");
    EXPECT_EQ(session.state.TableType, TableType::EX);

    // A save that comes to nothing does not keep the file from being opened.
    PutFile("/b.tbl", TableType::RACE);
    session.state.TableShown = true;
    ExpectOpeningQuestion(Answer::Yes);
    test.prompts.ExpectSave("");
    Open("/b.tbl");
    EXPECT_EQ(caption, kBase + " - b.tbl");

    ExpectOpeningQuestion(Answer::Yes);
    test.prompts.ExpectSave("/saved.tbl");
    Open("/saved.tbl");
    EXPECT_EQ(caption, kBase + " - saved.tbl");
    EXPECT_EQ(test.files.contents["/saved.tbl"], test.files.contents["/b.tbl"]);
}

TEST_F(FileCommandsTest, OpenKeepsTheParametersOfAFileWhoseTableItCannotShow) {
    const auto expectClosed = [&](TableType type) {
        ExpectHidden();
        EXPECT_EQ(caption, kBase);
        EXPECT_EQ(session.state.TableType, type);
        EXPECT_EQ(session.state.ModuleParameters, SomeParameters());
        EXPECT_EQ(session.table.Table(), SomeTable(TableType::RACE, 5)) << "the values stay as they are";
    };
    session.table.Replace(SomeTable(TableType::RACE, 5));
    PutFile("/ex.tbl", TableType::EX);
    PutFile("/race.tbl", TableType::RACE);

    const auto saved = test.files.contents;
    test.files.contents.erase("/program/RV52_EX_Chart.oc3");
    Open("/ex.tbl", [&] { ExpectRefusal("Chart template file RV52_EX_Chart.oc3 not found.", "File Open"); });
    expectClosed(TableType::EX);

    test.files.contents["/program/RV52_Chart.oc3"] = "damaged";
    Open("/race.tbl", [&] { ExpectRefusal("Chart template file RV52_Chart.oc3 not found.", "File Open"); });
    expectClosed(TableType::RACE);

    test.files.contents = saved;
    auto& file = test.files.contents["/ex.tbl"];
    file.replace(file.find("7500"), 4, "7600");
    Open("/ex.tbl", [&] { ExpectRefusal("Error loading /ex.tbl", "File Open"); });
    expectClosed(TableType::EX);

    // Redrawing is not left suspended, and the table that was closed can still be saved, as what it is.
    int redraws = 0;
    session.table.OnRedraw([&] { ++redraws; });
    session.table.Touch();
    EXPECT_EQ(redraws, 1);
    Save("/kept.tbl");
    Open("/kept.tbl");
    EXPECT_EQ(session.table.Table(), SomeTable(TableType::RACE, 5));
}

TEST_F(FileCommandsTest, OpenReportsWhatItCannotRead) {
    PutFile("/a.tbl", TableType::RACE);
    test.files.failReads = true;
    Open("/a.tbl", [&] {
        test.prompts.ExpectError("cannot read /a.tbl", Answer::Retry);
        test.prompts.ExpectError("cannot read /a.tbl", Answer::Abort);
    });
    ExpectHidden();
    EXPECT_EQ(caption, "as it was");
    EXPECT_EQ(session.state.ModuleParameters, ModuleParameters{});

    // Going on without the content: nothing is stated, and there is no data block.
    Open("/a.tbl", [&] {
        test.prompts.ExpectError("cannot read /a.tbl", Answer::Ignore);
        ExpectRefusal("Chart template file RV52_Chart.oc3 not found.", "File Open");
    });
    EXPECT_EQ(session.state.ModuleParameters.RPMLimit, 5700);
    EXPECT_EQ(caption, kBase);
}

TEST_F(FileCommandsTest, OpenAsksForEachValueThatIsNo16BitNumber) {
    auto text = FormatTableFile(SomeTable(TableType::RACE), SomeParameters());
    test.files.contents["/a.tbl"] = "!VSSFreq: 70000\r\n!RearOffset: -40000\r\n" + text;
    const std::string vss = "The value of !VSSFreq is no 16-bit whole number.";
    const std::string rear = "The value of !RearOffset is no 16-bit whole number.";
    Open("/a.tbl", [&] {
        test.prompts.ExpectError(vss, Answer::Retry);
        test.prompts.ExpectError(vss, Answer::Ignore);
        test.prompts.ExpectError(rear, Answer::Ignore);
    });
    EXPECT_TRUE(session.state.TableShown);
    EXPECT_EQ(session.state.ModuleParameters, SomeParameters());

    ExpectOpeningQuestion(Answer::No);
    Open("/a.tbl", [&] { test.prompts.ExpectError(vss, Answer::Abort); });
    ExpectHidden();
    EXPECT_EQ(session.state.ModuleParameters.RPMLimit, 5700) << "what was assumed before the value stays";
}

TEST_F(FileCommandsTest, OpenOffersAMissingFileAgain) {
    const MessageBox box{"/none.tbl\r\nFile not found.", "File Open", Icon::Warning, Buttons::RetryCancel};
    PutFile("/a.tbl", TableType::RACE);
    Open("/none.tbl", [&] {
        test.prompts.Expect(box, Answer::Retry);
        test.prompts.ExpectOpen("/a.tbl");
    });
    EXPECT_EQ(caption, kBase + " - a.tbl");

    session.state.TableShown = false;
    for (const auto answer : {Answer::Abort, Answer::Ignore}) {
        Open("/none.tbl", [&] {
            test.prompts.Expect(box, Answer::Cancel);
            test.prompts.ExpectError("Canceled File Open", Answer::Retry);
            test.prompts.ExpectOpen("/none.tbl");
            test.prompts.Expect(box, Answer::Cancel);
            test.prompts.ExpectError("Canceled File Open", answer);
        });
        ExpectHidden();
    }
}

TEST_F(FileCommandsTest, AFileOfTheCommandLineOpensAsIfChosenInTheDialog) {
    PutFile("/a.tbl", TableType::EX);
    OpenTableFile(session, "/a.tbl");
    EXPECT_EQ(caption, kBase + " - a.tbl");
    EXPECT_TRUE(session.state.TableShown);

    // One that is not there is met by the dialog's own box, and choosing again brings the dialog.
    const MessageBox box{"/none.tbl\r\nFile not found.", "File Open", Icon::Warning, Buttons::RetryCancel};
    ExpectOpeningQuestion(Answer::No);
    test.prompts.Expect(box, Answer::Cancel);
    test.prompts.ExpectError("Canceled File Open", Answer::Retry);
    test.prompts.ExpectOpen("/none.tbl");
    test.prompts.Expect(box, Answer::Retry);
    test.prompts.ExpectOpen("");
    OpenTableFile(session, "/none.tbl");
    ExpectHidden();
}

// Save

TEST_F(FileCommandsTest, SaveThenOpenGivesTheSameTable) {
    for (const auto type : {TableType::RACE, TableType::EX}) {
        const auto table = SomeTable(type, 3);
        ShowTable(table);
        session.state.ModuleParameters = SomeParameters();
        session.state.ModuleParameters.FlagByte = 0x40;
        // A transfer to a module of the other type may have left its type behind.
        session.state.TableType = type == TableType::EX ? TableType::RACE : TableType::EX;
        Save("/a.tbl");
        EXPECT_TRUE(session.state.TableShown);
        EXPECT_EQ(session.state.ModuleParameters.FlagByte, 0x40);
        EXPECT_EQ(caption, kBase + " - a.tbl");

        session.state.ModuleParameters = {};
        session.table.Replace(AdvanceTable(TableType::RACE));
        ExpectOpeningQuestion(Answer::No);
        Open("/a.tbl");
        EXPECT_EQ(session.table.Table(), table);
        EXPECT_EQ(session.state.TableType, type);
        EXPECT_EQ(session.state.ModuleParameters, SomeParameters());
        test.files.contents.erase("/a.tbl");
    }
    EXPECT_EQ(test.prompts.dialogs.at(0).title, "Save File");
    EXPECT_EQ(test.prompts.dialogs.at(0).filter, "Advance table files (*.tbl)|*.tbl");
}

TEST_F(FileCommandsTest, SaveRefusesWithoutATableSinceStartUp) {
    test.prompts.Expect({"No advance table data for saving.", "File Save", Icon::Warning, Buttons::Ok},
                        Answer::Ok);
    mnuSaveTable_Click(session);
    EXPECT_EQ(caption, "as it was");
}

TEST_F(FileCommandsTest, SaveReplacesAFileOnlyWhenTold) {
    ShowTable(SomeTable(TableType::RACE));
    test.files.contents["/old.tbl"] = "old";
    Save("");
    EXPECT_EQ(caption, "as it was");

    Save("/old.tbl", [&] {
        ExpectReplaceQuestion("/old.tbl", Answer::No);
        test.prompts.ExpectSave("");
    });
    EXPECT_EQ(test.files.contents["/old.tbl"], "old");

    Save("/old.tbl", [&] {
        ExpectReplaceQuestion("/old.tbl", Answer::Cancel);
        test.prompts.ExpectError("Canceled File Save", Answer::Abort);
    });
    EXPECT_EQ(test.files.contents["/old.tbl"], "old");

    Save("/old.tbl", [&] { ExpectReplaceQuestion("/old.tbl", Answer::Yes); });
    EXPECT_EQ(test.files.contents["/old.tbl"],
              FormatTableFile(session.table.Table(), session.state.ModuleParameters));
    EXPECT_EQ(caption, kBase + " - old.tbl");
}

TEST_F(FileCommandsTest, AFailedSaveClosesTheTableUnlessTold) {
    ShowTable(SomeTable(TableType::RACE));
    test.files.failWrites = true;
    const auto fail = [&](Answer close) {
        test.prompts.whileOpen = [&] { EXPECT_TRUE(session.state.TableShown); };
        Save("/a.tbl", [&] {
            ExpectRefusal("Error saving /a.tbl", "File Save");
            ExpectClosingQuestion(close);
        });
        test.prompts.whileOpen = {};
    };
    fail(Answer::Cancel);
    EXPECT_TRUE(session.state.TableShown);
    EXPECT_EQ(caption, "as it was");

    fail(Answer::No);
    ExpectHidden();
    EXPECT_EQ(caption, kBase);
    EXPECT_EQ(test.files.contents.count("/a.tbl"), 0U);

    // The closed table is still there to be saved.
    test.files.failWrites = false;
    Save("/b.tbl");
    ExpectHidden();
    EXPECT_EQ(caption, kBase + " - b.tbl");
    EXPECT_EQ(test.files.contents.count("/b.tbl"), 1U);
}

// Close

TEST_F(FileCommandsTest, CloseHidesTheTableAndKeepsIt) {
    ShowTable(SomeTable(TableType::EX));
    session.state.ModuleParameters = SomeParameters();
    ExpectClosingQuestion(Answer::Cancel);
    mnuCloseTable_Click(session);
    EXPECT_TRUE(session.state.TableShown);
    EXPECT_EQ(caption, "as it was");

    ExpectClosingQuestion(Answer::Yes);
    test.prompts.ExpectSave("");
    mnuCloseTable_Click(session);
    ExpectHidden();
    EXPECT_EQ(caption, kBase);
    EXPECT_EQ(session.table.Table(), SomeTable(TableType::EX));
    EXPECT_EQ(session.state.TableType, TableType::EX);
    EXPECT_EQ(session.state.ModuleParameters, SomeParameters());

    mnuCloseTable_Click(session);  // without a table there is nothing to ask
    ExpectHidden();
}

// The caption and the two dialogs by themselves

TEST_F(FileCommandsTest, TheCaptionShowsTheLast60CharactersOfAName) {
    session.table.Replace(AdvanceTable(TableType::RACE));
    const auto times = [](int count, std::string_view character) {
        std::string text;
        while (count-- > 0)
            text += character;
        return text;
    };
    const std::tuple<std::string, std::string> cases[] = {
        {times(60, "n"), " - " + times(60, "n")},
        {"x" + times(60, "n"), " - ..." + times(60, "n")},
        {times(60, "ü"), " - " + times(60, "ü")},
        {"ab" + times(60, "点"), " - ..." + times(60, "点")},
        {"a\\b.tbl", " - a\\b.tbl"}};
    for (const auto& [name, shown] : cases) {
        Save("/home/a folder/" + name);
        EXPECT_EQ(caption, kBase + shown);
    }
    Save("relative.tbl");
    EXPECT_EQ(caption, kBase + " - relative.tbl");
}

TEST_F(FileCommandsTest, FileOpenCanReturnAMissingFile) {
    const MessageBox box{"/new.txt\r\nFile not found.\r\n\r\nCreate it?", "File Open", Icon::Warning,
                         Buttons::YesNoCancel};
    const std::tuple<Answer, const char*> cases[] = {{Answer::Yes, "/new.txt"}, {Answer::No, ""}};
    for (const auto& [answer, path] : cases) {
        test.prompts.ExpectOpen("/new.txt");
        test.prompts.Expect(box, answer);
        EXPECT_EQ(FileOpen(session, "Title", "", "Create it?"), path);
        EXPECT_EQ(test.prompts.dialogs.back().filter, "All Files (*.*)|*.*");
    }
    test.prompts.ExpectOpen("/new.txt");
    test.prompts.Expect(box, Answer::Cancel);
    ExpectFailure([&] { FileOpen(session, "Title", "", "Create it?"); }, 1000, "Canceled File Open");
}

TEST_F(FileCommandsTest, AnAbortedDialogFailsWithItsNumber) {
    test.prompts.whileOpen = [&] {
        test.prompts.whileOpen = {};
        throw Failure("no display");
    };
    test.prompts.ExpectError("no display", Answer::Abort);
    ExpectFailure([&] { FileSave(session, "Title", "", "Overwrite?"); }, 1001, "Aborted File Save");

    test.files.contents["/a"] = "";
    test.prompts.ExpectSave("/a");
    test.prompts.Expect({"/a\r\nThis file already exists.\r\n\r\nOverwrite?", "File Save", Icon::Warning,
                         Buttons::YesNoCancel, Answer::No},
                        Answer::Yes);
    EXPECT_EQ(FileSave(session, "Title", "", "Overwrite?"), "/a");
}

}  // namespace
}  // namespace rv52
