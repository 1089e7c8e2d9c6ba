#include "support/IdleLine.h"
#include "support/ShownTable.h"
#include "support/TestSession.h"
#include "table/NewTable.h"
#include "table/TableBlock.h"

#include <gtest/gtest.h>
#include <limits>
#include <tuple>

namespace rv52 {
namespace {

TEST(NewAdvanceTest, GivesTheWorkedValues) {
    const std::tuple<double, double, int, int, double> cases[] = {
        {10, 28, 0, 5, 10},
        {10, 28, 9, 5, 28},
        {10, 28, 3, 7, 18},
        {10, 28, 0, 0, 5},
        {10, 28, 1, 5, 12},
        {10, 28, 9, 9, 32},
        {2, 44, 0, 0, 0},
        {2, 44, 9, 9, 45},
        {0, 45, 9, 5, 45},
        {0, 45, 0, 5, 0},
        {10, 11, 1, 5, 91.0 / 9},
        {30, 10, 9, 5, 10},  // nobody checks that the minimum is the lower one
        {-std::numeric_limits<double>::max(), std::numeric_limits<double>::max(), 4, 5, 0}};
    for (const auto& [minimum, maximum, advSlope, initTiming, advance] : cases)
        EXPECT_DOUBLE_EQ(NewAdvance(minimum, maximum, advSlope, initTiming), advance)
            << minimum << " to " << maximum << ", " << advSlope << ", " << initTiming;
}

TEST(NewAdvanceTest, TheSlidersCountFromTheTop) {
    EXPECT_EQ(SettingAt(0), 9);
    EXPECT_EQ(SettingAt(9), 0);
    for (int position = 0; position <= kLastSliderPosition; ++position) {
        EXPECT_EQ(TimingSliderStop(TableType::RACE, position), position);
        EXPECT_EQ(TimingSliderStop(TableType::EX, position), position < 4 ? 4 : position);
    }
}

class NewTableTest : public testing::Test {
 protected:
    void AnswerType(const char* answer) {
        test.prompts.ExpectText({"Enter table type (Race or EX)", "Create New Advance Table", "Race"},
                                answer);
    }
    void ExpectQuestion(Answer answer) {
        test.prompts.Expect(
            {"Save advance table before closing file?", "Close File", Icon::Warning, Buttons::YesNoCancel},
            answer);
    }
    void OnDialog(std::function<void(NewTable&)> act) { test.shell.whileNewTableOpen = std::move(act); }
    AdvanceTable Limits(Limit limit) {
        return LoadLimitTable(test.files, session.state.TableType, limit).value();
    }

    test::IdleLine line;
    test::TestSession test{line};
    Session& session = test.session;
};

TEST_F(NewTableTest, AsksForTheType) {
    const std::tuple<const char*, TableType> cases[] = {
        {"ex", TableType::EX},    {"Ex", TableType::EX},    {"EX", TableType::EX},
        {" EX", TableType::RACE}, {"EX2", TableType::RACE}, {"Race", TableType::RACE},
        {"", TableType::RACE},    {"EX ", TableType::RACE}, {"e", TableType::RACE}};
    for (const auto& [answer, type] : cases) {
        AnswerType(answer);
        mnuNewTable_Click(session);
        EXPECT_EQ(session.state.TableType, type) << answer;
        EXPECT_EQ(session.table.Table().Type(), type);
    }
    EXPECT_EQ(test.shell.newTableDialogs, 9);
}

TEST_F(NewTableTest, OpensWithTheTableHiddenAndTheSettingsAtZero) {
    for (const auto type : {TableType::RACE, TableType::EX}) {
        test::ShowAs(session, test::FlatTable(TableType::RACE, 20));
        auto& parameters = session.state.ModuleParameters;
        parameters = {};
        parameters.RPMLimit = 8000;
        parameters.RearOffset = 3;
        parameters.InitialTiming = 2;
        test.shell.caption = "as it was";
        bool seen = false;
        OnDialog([&](NewTable& newTable) {
            seen = true;
            EXPECT_EQ(newTable.AdvSlope, 0);
            EXPECT_EQ(newTable.InitTiming, 0);
            EXPECT_EQ(newTable.MinTable, Limits(Limit::Minimum));
            EXPECT_EQ(newTable.MaxTable, Limits(Limit::Maximum));
            EXPECT_FALSE(session.state.TableShown || test.view.shown);
            EXPECT_EQ(test.shell.caption, session.state.BaseCaption);
            EXPECT_EQ(session.sheet.RowCount(), RowCount(type) + 1);
            EXPECT_EQ(session.sheet.Editable(), type == TableType::RACE);
            EXPECT_EQ(session.chart.Interactive(), type == TableType::RACE);
            EXPECT_EQ(session.chart.Template()->rows, RowCount(type));
            EXPECT_EQ(parameters.RPMLimit, 8000);
            EXPECT_EQ(parameters.RearOffset, type == TableType::EX ? 0 : 3);
            EXPECT_EQ(parameters.InitialTiming, type == TableType::EX ? 0 : 2);
        });
        ExpectQuestion(Answer::No);
        AnswerType(type == TableType::EX ? "EX" : "Race");
        mnuNewTable_Click(session);
        EXPECT_TRUE(seen);
        // Closed without Update or OK.
        EXPECT_FALSE(session.state.TableShown || test.view.shown);
        EXPECT_EQ(test.shell.caption, session.state.BaseCaption);
        EXPECT_EQ(session.table.Table(), AdvanceTable(type));
    }
}

TEST_F(NewTableTest, KeepsRetardedInitialTimingForEx) {
    session.state.ModuleParameters.InitialTiming = -2;
    AnswerType("EX");
    mnuNewTable_Click(session);
    EXPECT_EQ(session.state.ModuleParameters.InitialTiming, -2);
}

TEST_F(NewTableTest, CancelAtTheQuestionChangesNothing) {
    test::ShowAs(session, test::FlatTable(TableType::EX, 20));
    test.shell.caption = "as it was";
    ExpectQuestion(Answer::Cancel);
    mnuNewTable_Click(session);
    EXPECT_TRUE(session.state.TableShown);
    EXPECT_EQ(test.shell.caption, "as it was");
    EXPECT_EQ(session.table.Table(), test::FlatTable(TableType::EX, 20));
    EXPECT_EQ(test.shell.newTableDialogs, 0);
}

TEST_F(NewTableTest, SavesFirstWhenToldAndGoesOnWhateverComesOfIt) {
    for (const auto* path : {"/saved.tbl", ""}) {
        test::ShowAs(session, test::FlatTable(TableType::EX, 20));
        ExpectQuestion(Answer::Yes);
        test.prompts.ExpectSave(path);
        AnswerType("Race");
        mnuNewTable_Click(session);
    }
    EXPECT_EQ(test.files.contents.count("/saved.tbl"), 1U);
    EXPECT_EQ(test.shell.newTableDialogs, 2);
}

TEST_F(NewTableTest, EndsWithoutItsFiles) {
    const std::tuple<const char*, const char*, const char*, std::string> cases[] = {
        {"RV52_Chart.oc3", "Race", "File Open", "Chart template file RV52_Chart.oc3 not found."},
        {"RV52_EX_Chart.oc3", "EX", "File Open", "Chart template file RV52_EX_Chart.oc3 not found."},
        {"RV52_Min.dat", "Race", "New Table", "RV52_Min.dat not found."},
        {"RV52_Max.dat", "Race", "New Table", "RV52_Max.dat not found."},
        {"RV52_EX_Min.dat", "EX", "New Table", "RV52_EX_Min.dat not found."},
        {"RV52_EX_Max.dat", "EX", "New Table", "RV52_EX_Max.dat not found."}};
    const auto all = test.files.contents;
    for (const auto& [file, answer, title, text] : cases) {
        SCOPED_TRACE(file);
        test.files.contents = all;
        test::ShowAs(session, test::FlatTable(TableType::RACE, 20));
        session.state.ModuleParameters.RearOffset = 3;
        test.files.contents.erase(std::string("/program/") + file);
        test.shell.caption = "as it was";
        ExpectQuestion(Answer::No);
        AnswerType(answer);
        test.prompts.Expect({text, title, Icon::Critical, Buttons::Ok}, Answer::Ok);
        mnuNewTable_Click(session);
        EXPECT_FALSE(session.state.TableShown || test.view.shown);
        EXPECT_EQ(session.state.TableType, TypeNamedIn(answer));
        EXPECT_EQ(session.state.ModuleParameters.RearOffset, 3);
        EXPECT_EQ(test.shell.caption, session.state.BaseCaption);
    }
    EXPECT_EQ(test.shell.newTableDialogs, 0);
}

TEST_F(NewTableTest, CreatesAndShowsTheTable) {
    for (const auto* type : {"Race", "EX"}) {
        session.state.TableShown = false;
        AnswerType(type);
        OnDialog([&](NewTable& newTable) {
            const auto create = [&](int advSlope, int initTiming) {
                newTable.AdvSlope = static_cast<std::int16_t>(advSlope);
                newTable.InitTiming = static_cast<std::int16_t>(initTiming);
                CreateNewTable(session, newTable);
                return session.table.Table();
            };
            EXPECT_EQ(create(9, 5), newTable.MaxTable);
            EXPECT_EQ(create(0, 5), newTable.MinTable);
            const auto middle = create(4, 7);
            create(9, 9);
            EXPECT_EQ(create(4, 7), middle) << "nothing of an earlier run is used";

            EXPECT_TRUE(session.state.TableShown && test.view.shown);
            EXPECT_EQ(session.sheet.Cursor(), (GridCell{3, 3}));
            EXPECT_EQ(test.shell.caption, session.state.BaseCaption);
            const auto lowest = create(0, 0);
            ForEachCell(lowest.Type(), [&](Cell cell) {
                EXPECT_EQ(lowest.GetCell(cell), std::max(0.0, newTable.MinTable.GetCell(cell) - 5));
            });
            EXPECT_EQ(session.sheet.Text({lowest.RowCount(), 1}), "0.0");
        });
        mnuNewTable_Click(session);
        EXPECT_TRUE(session.state.TableShown);
    }
}

}  // namespace
}  // namespace rv52
