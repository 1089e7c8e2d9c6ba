#include "core/table/FileDesk.h"

namespace rv52::test {
namespace {

using SaveTableTest = FileDesk;

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
        session.chart.ShowLabel({1, 1}, "7.0");
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
            ExpectClosingQuestion(close);
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
