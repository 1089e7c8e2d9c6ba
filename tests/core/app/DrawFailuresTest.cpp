#include "app/RunCommand.h"
#include "core/SessionTest.h"
#include "platform/Failure.h"
#include "support/FailureOf.h"
#include "table/commands/CopyPasteModify.h"
#include "table/commands/GridCursor.h"

namespace rv52::test {
namespace {

// Chart and grid that cannot always be drawn; and a copied 30 for every cell of a table of 20.
class DrawFailuresTest : public SessionTest {
 protected:
    DrawFailuresTest() {
        const auto gridChanged = [this](GridSheet::Change change) {
            if (change == GridSheet::Change::Texts) Draw(gridDraws);
        };
        listening = {session.table.OnRedraw([this] { Draw(chartDraws); }),
                     session.sheet.OnChange(gridChanged), session.drawing.OnKept([this] { ++kept; })};
        ShowFlat(TableType::RACE, 20);
        SelectGridCells(session, {{GridRow(1), GridColumn(1)}, {GridRow(8), GridColumn(16)}},
                        {GridRow(1), GridColumn(1)});
        session.state.CopyBuffer = "30";
        broken = true;
        chartDraws = gridDraws = 0;
    }
    std::vector<Listening> listening;
    void Draw(int& draws) const {
        ++draws;
        if (broken) throw Failure("no ink");
    }
    // Asked about once, and with everything changed by then.
    void ExpectAsked(
        Answer answer, const Act& meanwhile = [] {}) {
        prompts.ExpectError("no ink", answer);
        prompts.whileOpen = [this, meanwhile] {
            EXPECT_EQ(session.table.Table(), FlatTable(TableType::RACE, 30));
            EXPECT_EQ(Text(GridCell{GridRow(8), GridColumn(16)}), "30");
            meanwhile();
        };
    }

    bool broken = false;
    int chartDraws = 0;
    int gridDraws = 0;
    int kept = 0;
};

TEST_F(DrawFailuresTest, AreAskedAboutOnceWhenTheChangeIsOver) {
    for (const auto answer : {Answer::Ignore, Answer::Abort}) {
        ExpectAsked(answer);
        RunCommand(session, mnuPopupPaste3D_Click);
        EXPECT_TRUE(prompts.Done());
        session.drawing.Tell(session.steps);  // nothing is left to tell
    }
    EXPECT_EQ(std::pair(chartDraws, gridDraws), std::pair(2, 2)) << "nobody drew in vain once more";
}

TEST_F(DrawFailuresTest, RetryDrawsAgainAndDoesNothingElse) {
    ExpectAsked(Answer::Retry);
    ExpectAsked(Answer::Retry, [this] {
        broken = chartDraws < 2;  // the second box: now there is ink
    });
    RunCommand(session, mnuPopupPaste3D_Click);
    EXPECT_EQ(std::pair(chartDraws, gridDraws), std::pair(3, 3));
    EXPECT_EQ(session.table.Table(), FlatTable(TableType::RACE, 30));
}

// Outside of a command it is for the window to ask, when it gets to it.
TEST_F(DrawFailuresTest, WaitForWhoeverIsToAsk) {
    session.table.SetCell({Column(1), Row(1)}, 5);
    session.chart.HideLabel();
    EXPECT_EQ(kept, 1);
    prompts.whileOpen = [this] { session.table.Touch(); };  // what is beneath the box is painted too
    prompts.ExpectError("no ink", Answer::Ignore);
    session.drawing.Tell(session.steps);
    EXPECT_EQ(kept, 1);
    session.table.Touch();
    EXPECT_EQ(kept, 2) << "the next change draws anew";
}

}  // namespace
}  // namespace rv52::test
