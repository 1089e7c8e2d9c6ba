#include "core/Desk.h"
#include "table/CellEditing.h"
#include "table/GridCursor.h"

#include <tuple>
#include <utility>

namespace rv52::test {
namespace {

class CellEditingTest : public Desk {
 protected:
    void ExpectRefused(GridCell at, const std::string& text, const std::string& words) {
        prompts.ExpectNotice(words, "Advance Edit", Icon::Critical);
        EXPECT_FALSE(EndEdit(session, at, text)) << text;
        EXPECT_TRUE(prompts.Done()) << text;
    }
};

TEST_F(CellEditingTest, TakesRaceTextsFromZeroTo45AndNothingElse) {
    ShowFlat(TableType::RACE, 30);
    MoveGridCursor(session, {7, 7});
    int redraws = 0;
    session.table.OnRedraw([&] { ++redraws; });
    const std::tuple<const char*, double, const char*> accepted[] = {
        {"0", 0, "0.0"},       {"45", 45, "45.0"}, {" 27.75 ", 27.75, "27.8"},
        {"+.25", 0.25, "0.3"}, {"5.", 5, "5.0"},   {"0.1234", 0.1234, "0.1"}};
    for (const auto& [text, degrees, label] : accepted) {
        EXPECT_TRUE(EndEdit(session, {2, 3}, text)) << text;
        EXPECT_EQ(Text(GridCell{2, 3}), text);
        EXPECT_EQ(Degrees(Cell{3, 7}), degrees) << text;
        EXPECT_EQ(std::exchange(redraws, 0), 1) << text;
        // The label keeps its place on the cursor's cell.
        EXPECT_EQ(session.chart.Label(), (ValueLabel{true, {7, 2}, label}));
    }
    for (const std::string text : {"", "abc", "45.01", "-0.1", "1,5", "1e1", "5-", "nan", "0x10"})
        ExpectRefused({2, 3}, text, "Advance must be numeric value between zero and 45 degrees.");
    EXPECT_EQ(Text(GridCell{2, 3}), "0.1234");
    EXPECT_EQ(Degrees(Cell{3, 7}), 0.1234);
    EXPECT_EQ(session.chart.Label().text, "0.1");
}

// A transfer that failed may leave another type in force than the table on screen was loaded as: the limit
// goes by the type in force.
TEST_F(CellEditingTest, HoldsExCellsUnderTheirOwnMaximum) {
    for (const auto shown : {TableType::EX, TableType::RACE}) {
        ShowFlat(shown, 30);
        session.state.TableType = TableType::EX;
        session.state.ExMaxTable.SetCell({3, 10}, 32.5);
        session.state.ExMaxTable.SetCell({4, 10}, 30);
        const std::string words = "EX version advance must be numeric value between zero and ";
        EXPECT_TRUE(EndEdit(session, {2, 3}, "32.5"));
        EXPECT_EQ(Degrees(GridCell{2, 3}), 32.5);
        ExpectRefused({2, 3}, "32.51", words + "32.5 degrees.");
        ExpectRefused({2, 4}, "32.5", words + "30.0 degrees.");
    }
    ShowFlat(TableType::EX, 30);
    session.state.TableType = TableType::RACE;
    EXPECT_TRUE(EndEdit(session, {11, 16}, "45"));
    EXPECT_EQ(Degrees(Cell{16, 1}), 45);
}

}  // namespace
}  // namespace rv52::test
