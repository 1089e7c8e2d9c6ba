#include "support/IdleLine.h"
#include "support/ShownTable.h"
#include "support/TestSession.h"
#include "table/CellEditing.h"
#include "table/Numbers.h"

#include <gtest/gtest.h>
#include <tuple>
#include <utility>

namespace rv52::test {
namespace {

class CellEditingTest : public testing::Test {
 protected:
    void Show(TableType type) { ShowAs(session, FlatTable(type, 30)); }
    double Degrees(GridCell at) const {
        return session.table.Table().GetCell(CellAt(at, session.table.Table().Type()));
    }
    void ExpectRefusal(const std::string& text) {
        test.prompts.Expect({text, "Advance Edit", Icon::Critical, Buttons::Ok}, Answer::Ok);
    }

    IdleLine line;
    TestSession test{line};
    Session& session = test.session;
    const GridCell cell{2, 3};
};

TEST_F(CellEditingTest, TakesRaceTextsFromZeroTo45) {
    Show(TableType::RACE);
    MoveGridCursor(session, {7, 7});
    int redraws = 0;
    session.table.OnRedraw([&] { ++redraws; });
    const std::tuple<const char*, double, const char*> accepted[] = {
        {"30", 30, "30.0"},    {"0", 0, "0.0"},  {"45", 45, "45.0"},       {" 27.75 ", 27.75, "27.8"},
        {"+.25", 0.25, "0.3"}, {"5.", 5, "5.0"}, {"0.1234", 0.1234, "0.1"}};
    for (const auto& [text, degrees, label] : accepted) {
        EXPECT_TRUE(EndEdit(session, cell, text)) << text;
        EXPECT_EQ(session.sheet.Text(cell), text);
        EXPECT_EQ(Degrees(cell), degrees) << text;
        EXPECT_EQ(std::exchange(redraws, 0), 1) << text;
        // The label keeps its place on the cursor's cell.
        EXPECT_EQ(session.chart.Label(), (ValueLabel{true, {7, 2}, label}));
    }
    const GridRange cursor{{7, 7}, {7, 7}};
    EXPECT_EQ(session.sheet.Selection(), cursor);

    CopyChartToGrid(session);
    EXPECT_EQ(session.sheet.Text(cell), "0.1");
}

TEST_F(CellEditingTest, RefusesEverythingElse) {
    Show(TableType::RACE);
    const auto label = session.chart.Label();
    for (const char* text : {"", " ", "abc", "45.01", "-0.1", "1,5", "1e1", "5-", "--5", "1.2.3", "3 0", "5%",
                             "inf", "nan", "0x10", "\xEF\xBC\x95", "99999999999999999999999999999"}) {
        ExpectRefusal("Advance must be numeric value between zero and 45 degrees.");
        EXPECT_FALSE(EndEdit(session, cell, text)) << text;
        EXPECT_TRUE(test.prompts.Done()) << text;
    }
    ExpectRefusal("Advance must be numeric value between zero and 45 degrees.");
    EXPECT_FALSE(EndEdit(session, cell, std::string(10000, '9')));
    EXPECT_EQ(session.sheet.Text(cell), "30.0");
    EXPECT_EQ(Degrees(cell), 30);
    EXPECT_EQ(session.chart.Label(), label);
}

TEST_F(CellEditingTest, HoldsExCellsUnderTheirOwnMaximum) {
    Show(TableType::EX);
    session.state.ExMaxTable.SetCell({3, 10}, 32.5);
    session.state.ExMaxTable.SetCell({4, 10}, 30);
    EXPECT_EQ(UpperLimit(session, {2, 3}), 32.5);
    EXPECT_TRUE(EndEdit(session, {2, 3}, "32.5"));
    ExpectRefusal("EX version advance must be numeric value between zero and 32.5 degrees.");
    EXPECT_FALSE(EndEdit(session, {2, 3}, "32.51"));
    ExpectRefusal("EX version advance must be numeric value between zero and 30.0 degrees.");
    EXPECT_FALSE(EndEdit(session, {2, 4}, "32.5"));
    ExpectRefusal("EX version advance must be numeric value between zero and 30.0 degrees.");
    EXPECT_FALSE(EndEdit(session, {2, 4}, "x"));
}

// A transfer that failed may leave another type in force than the table on screen was loaded as.
TEST_F(CellEditingTest, GoesByTheTypeInForce) {
    Show(TableType::RACE);
    session.state.TableType = TableType::EX;
    session.state.ExMaxTable.SetCell({3, 10}, 20);
    EXPECT_EQ(UpperLimit(session, cell), 20);
    EXPECT_TRUE(EndEdit(session, cell, "19"));
    EXPECT_EQ(session.table.Table().GetCell({3, 7}), 19);

    Show(TableType::EX);
    session.state.TableType = TableType::RACE;
    EXPECT_EQ(UpperLimit(session, {11, 16}), 45);
    EXPECT_TRUE(EndEdit(session, {11, 16}, "45"));
    EXPECT_EQ(session.table.Table().GetCell({16, 1}), 45);
}

}  // namespace
}  // namespace rv52::test
