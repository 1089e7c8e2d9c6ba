#include "core/SessionTest.h"
#include "table/Numbers.h"
#include "table/commands/NewTable.h"

#include <limits>
#include <tuple>

namespace rv52::test {
namespace {

TEST(NewAdvanceTest, GivesTheWorkedValues) {
    constexpr double most = std::numeric_limits<double>::max();
    const std::tuple<double, double, int, int, double> cases[] = {
        {10, 28, 0, 5, 10},       {10, 28, 9, 5, 28},     {10, 28, 3, 7, 18}, {10, 28, 0, 0, 5},
        {10, 28, 1, 5, 12},       {10, 28, 9, 9, 32},     {2, 44, 0, 0, 0},   {2, 44, 9, 9, 45},
        {10, 11, 1, 5, 91.0 / 9}, {-most, most, 4, 5, 0}, {30, 10, 9, 5, 10}};  // nobody checks that the
                                                                                // minimum is the lower one
    for (const auto& [minimum, maximum, advSlope, initTiming, advance] : cases)
        EXPECT_DOUBLE_EQ(NewAdvance(minimum, maximum, advSlope, initTiming), advance)
            << minimum << " to " << maximum << ", " << advSlope << ", " << initTiming;
}

class NewTableTest : public SessionTest {
 protected:
    void ShowOldTable() {
        ShowFlat(TableType::RACE, 20);
        caption = "as it was";
    }
    void ExpectQuestion(Answer answer) {
        prompts.ExpectQuestion("Save advance table before closing file?", "Close File", answer);
    }
    void AnswerType(const char* answer) {
        prompts.ExpectText({"Enter table type (Race or EX)", "Create New Advance Table", "Race"}, answer);
    }
};

TEST_F(NewTableTest, OpensWithTheTableHiddenAndTheSettingsAtZero) {
    const std::string race = "RACE hidden, 8 rows, at 0 0, editable, chart editable, template of 8: ";
    const std::string ex = "EX hidden, 11 rows, at 0 0, fixed, chart fixed, template of 11: ";
    // The answer, what it brings, and what becomes of an initial timing and of a rear offset of 3.
    const std::tuple<const char*, std::string, std::int16_t, std::int16_t, std::int16_t> cases[] = {
        {"Race", race, 2, 2, 3}, {"", race, 2, 2, 3}, {" EX", race, 2, 2, 3},
        {"EX2", race, 2, 2, 3},  {"ex", ex, 2, 0, 0}, {"EX", ex, -2, -2, 0}};
    for (const auto& [answer, screen, before, timing, rear] : cases) {
        const auto type = screen == ex ? TableType::EX : TableType::RACE;
        ShowOldTable();
        parameters = {before, 3, 0, 8000};
        test.shell.whileNewTableOpen = [&](NewTable& newTable) {
            EXPECT_EQ(newTable.AdvSlope + newTable.InitTiming, 0);
            EXPECT_EQ(newTable.MinTable, LoadLimitTable(test.files, type, Limit::Minimum));
            EXPECT_EQ(newTable.MaxTable, LoadLimitTable(test.files, type, Limit::Maximum));
        };
        ExpectQuestion(Answer::No);
        AnswerType(answer);
        mnuNewTable_Click(session);
        // Closed without Update or OK.
        EXPECT_EQ(OnScreen(test), screen + session.state.BaseCaption) << answer;
        EXPECT_EQ(session.table.Table(), AdvanceTable(type));
        EXPECT_EQ(parameters, (ModuleParameters{timing, rear, 0, 8000}));
    }
    EXPECT_EQ(test.shell.newTableDialogs, 6);
}

TEST_F(NewTableTest, EndsWhenToldAndWithoutItsFiles) {
    ShowOldTable();
    ExpectQuestion(Answer::Cancel);
    mnuNewTable_Click(session);
    EXPECT_TRUE(session.state.TableShown);
    EXPECT_EQ(caption, "as it was");
    EXPECT_EQ(session.table.Table(), FlatTable(TableType::RACE, 20));

    const std::pair<const char*, std::string> cases[] = {
        {"Race", "RV52_Chart.oc3"}, {"Race", "RV52_Min.dat"}, {"EX", "RV52_EX_Max.dat"}};
    const auto all = files;
    for (const auto& [answer, file] : cases) {
        const bool isChart = file.ends_with(".oc3");
        files = all;
        ShowOldTable();
        parameters.RearOffset = 3;
        files.erase("/program/" + file);
        ExpectQuestion(Answer::No);
        AnswerType(answer);
        prompts.ExpectNotice((isChart ? "Chart template file " : "") + file + " not found.",
                             isChart ? "File Open" : "New Table", Icon::Critical);
        mnuNewTable_Click(session);
        EXPECT_FALSE(session.state.TableShown || test.view.shown);
        EXPECT_EQ(caption, session.state.BaseCaption);
        EXPECT_EQ(session.state.TableType, TypeNamedIn(answer));
        EXPECT_EQ(parameters.RearOffset, 3);
    }
    EXPECT_EQ(test.shell.newTableDialogs, 0);
}

TEST_F(NewTableTest, CreatesAndShowsTheTable) {
    for (const auto* type : {"Race", "EX"}) {
        session.state.TableShown = false;
        AnswerType(type);
        test.shell.whileNewTableOpen = [&](NewTable& newTable) {
            const auto create = [&](int advSlope, int initTiming) {
                newTable.AdvSlope = static_cast<std::int16_t>(advSlope);
                newTable.InitTiming = static_cast<std::int16_t>(initTiming);
                CreateNewTable(session, newTable);
                const double degrees = session.table.Table().GetCell(
                    CellAt({GridRow(3), GridColumn(3)}, session.state.TableType));
                EXPECT_EQ(session.chart.Label(),
                          (ValueLabel{true, CellAt({GridRow(3), GridColumn(3)}, session.state.TableType),
                                      FormatTenths(degrees)}))
                    << "at every Update";
                return session.table.Table();
            };
            EXPECT_EQ(create(9, 5), newTable.MaxTable);
            EXPECT_EQ(create(0, 5), newTable.MinTable);
            EXPECT_EQ(create(0, 0).GetCell({Column(16), Row(1)}),
                      newTable.MinTable.GetCell({Column(16), Row(1)}) - 5);
            EXPECT_EQ(session.sheet.Text({GridRow(RowCount(session.state.TableType)), GridColumn(1)}), "0.0");
            EXPECT_TRUE(session.state.TableShown && test.view.shown);
            EXPECT_EQ(session.sheet.Cursor(), (GridCell{GridRow(3), GridColumn(3)}));
            EXPECT_EQ(caption, session.state.BaseCaption);
        };
        mnuNewTable_Click(session);
    }
}

}  // namespace
}  // namespace rv52::test
