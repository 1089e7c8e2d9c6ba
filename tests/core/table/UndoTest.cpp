#include "app/RunCommand.h"
#include "app/StatusText.h"
#include "app/WindowKeys.h"
#include "chart/commands/ChartEditing.h"
#include "core/SessionTest.h"
#include "core/table/RandomTable.h"
#include "table/Numbers.h"
#include "table/commands/CopyPasteModify.h"
#include "table/commands/EndEdit.h"
#include "table/commands/GridCursor.h"
#include "table/commands/OpenTable.h"
#include "table/commands/SaveAndCloseTable.h"

#include <algorithm>
#include <random>

namespace rv52::test {
namespace {

// All that an undo brings back.
struct Content {
    explicit Content(const Session& session)
        : table(session.table.Table()), cursor(session.sheet.Cursor()), selection(session.sheet.Selection()) {
        for (int row = 0; row < session.sheet.RowCountWithHeader(); ++row)
            for (int column = 0; column < session.sheet.ColumnCountWithHeader(); ++column)
                texts.push_back(session.sheet.Text({GridRow(row), GridColumn(column)}));
    }
    bool SameTable(const Content& other) const { return table == other.table && texts == other.texts; }
    bool operator==(const Content&) const = default;

    AdvanceTable table;
    std::vector<std::string> texts;
    GridCell cursor;
    GridRange selection;
};

// Says whatever a test has put here to the next question for a text.
class Answering : public ScriptedPrompts {
 public:
    std::string AskText(const InputBox&) override { return answer; }

    std::string answer;
};

// One thing that a user does to a table: first the cursor goes somewhere, then the table changes.
struct Deed {
    std::function<void(Session&)> prepare;
    std::function<void(Session&, Answering&)> change;
};

// At most these cells, one of which is the top left.
class Chance {
 public:
    explicit Chance(unsigned seed) : random_(seed) {}

    int Below(int count) { return static_cast<int>(random_() % static_cast<unsigned>(count)); }
    GridCell CellOf(TableType type) {
        return {GridRow(1 + Below(RowCount(type))), GridColumn(1 + Below(16))};
    }
    GridRange BlockOf(TableType type) {
        const auto [a, b] = std::pair(CellOf(type), CellOf(type));
        return {{std::min(a.row, b.row), std::min(a.column, b.column)},
                {std::max(a.row, b.row), std::max(a.column, b.column)}};
    }

    Deed Any(TableType type) {
        const auto at = CellOf(type);
        const auto block = BlockOf(type);
        const auto to = CellOf(type);
        const double mouse = Below(4500) / 100.0;
        const auto go = [=](Session& session) { MoveGridCursor(session, at); };
        const auto select = [=](Session& session) { SelectGridCells(session, block, block.last); };
        const auto drag = [=](PressKey key, void (*end)(Session&)) {
            return [=](Session& session, Answering&) {
                ChartPress(session, key, CellAt(at, type));
                ChartDrag(session, mouse / 2);
                UndoPressed(session);  // has no effect on a drag
                ChartDrag(session, mouse);
                end(session);
            };
        };
        switch (Below(6)) {
            case 0:
                return {go, [=](Session& session, Answering&) {
                            EndEdit(session, at, ShortestDecimal(std::min(mouse, UpperLimit(session, at))));
                        }};
            case 1:
                return {select, [=](Session& session, Answering& prompts) {
                            prompts.answer =
                                std::array{"-5%", "+1.5", "30", "80%", "+0"}[std::size_t(at.row) % 5];
                            mnuPopUpModify3D_Click(session);
                        }};
            case 2:
                return {[=](Session& session) {
                            select(session);
                            mnuPopUpCopy3D_Click(session);
                            MoveGridCursor(session, to);
                        },
                        [](Session& session, Answering&) { mnuPopupPaste3D_Click(session); }};
            case 3:
                return {select, drag(PressKey::Plain, ChartRelease)};
            case 4:
                return {select, drag(PressKey::Plain, ChartDragLost)};
            default:
                return {select, drag(PressKey::Shift, ChartRelease)};
        }
    }

 private:
    std::mt19937 random_;
};

// A session whose table has just been opened.
struct Opened {
    Opened(TableType type, unsigned seed) { ShowAs(session, RandomTable(type, seed)); }

    IdleLine line;
    TestSession test{line};
    Answering prompts;
    Session session{PortsOf(test.session)};

 private:
    Ports PortsOf(const Session& other) {
        return {line, prompts, other.view, other.shell, other.files, other.settings, other.printer};
    }
};

TEST(UndoTest, AnyEditsAreTakenBackAndMadeAgainToTheLetter) {
    for (unsigned seed = 1; seed <= 60; ++seed) {
        SCOPED_TRACE(seed);
        const auto type = seed % 2 == 0 ? TableType::EX : TableType::RACE;
        Chance chance(seed);
        Opened opened(type, seed);
        auto& session = opened.session;
        std::vector<Deed> done;
        std::vector<Content> before;
        std::vector<Content> after;
        std::size_t present = 0;
        const auto undo = [&] {
            UndoPressed(session);
            EXPECT_EQ(Content(session), before[--present]);
        };
        const auto redo = [&] {
            RedoPressed(session);
            EXPECT_EQ(Content(session), after[present++]);
        };
        for (int act = 0; act < 80; ++act) {
            const int choice = chance.Below(4);
            if (choice == 0 && present > 0) {
                undo();
            } else if (choice == 1 && present < done.size()) {
                redo();
            } else {
                const auto deed = chance.Any(type);
                deed.prepare(session);
                const Content was(session);
                deed.change(session, opened.prompts);
                const Content is(session);
                if (is.SameTable(was)) continue;  // nothing to undo
                done.resize(present++);
                done.push_back(deed);
                before.erase(before.begin() + std::ptrdiff_t(present - 1), before.end());
                after.erase(after.begin() + std::ptrdiff_t(present - 1), after.end());
                before.push_back(was);
                after.push_back(is);
            }
        }
        while (present > 0)
            undo();
        UndoPressed(session);
        EXPECT_EQ(session.state.LastOutcome, "Nothing to undo");
        while (present < done.size())
            redo();
        RedoPressed(session);
        EXPECT_EQ(session.state.LastOutcome, "Nothing to redo");

        Opened never(type, seed);
        for (const auto& deed : done) {
            deed.prepare(never.session);
            deed.change(never.session, never.prompts);
        }
        EXPECT_TRUE(Content(session).SameTable(Content(never.session))) << "as if nothing had been undone";
    }
}

class UndoKeysTest : public SessionTest {
 protected:
    void SetUp() override { ShowFlat(TableType::RACE, 30); }
    void Edit(const std::string& text) { EXPECT_TRUE(EndEdit(session, kAt, text)); }
    std::string Status() const {
        return StatusText(session.state, session.table, session.sheet, session.history, "/dev/ttyS0");
    }

    static constexpr GridCell kAt{GridRow(2), GridColumn(3)};
};

TEST_F(UndoKeysTest, GoesBackAtLeastTwoHundredSteps) {
    for (int step = 0; step < 300; ++step)
        Edit(std::to_string(step % 45) + ".04");
    for (std::size_t step = 0; step < EditHistory::kMostSteps; ++step)
        UndoPressed(session);
    EXPECT_GE(EditHistory::kMostSteps, 200U);
    EXPECT_EQ(Text(kAt), std::to_string((300 - EditHistory::kMostSteps - 1) % 45) + ".04");
    UndoPressed(session);
    EXPECT_EQ(session.state.LastOutcome, "Nothing to undo");
}

TEST_F(UndoKeysTest, TheStatusLineTellsWhatWasUndoneAndWhatDiffers) {
    MoveGridCursor(session, {GridRow(0), GridColumn(1)});
    const std::string port = "Com1: /dev/ttyS0";
    EXPECT_EQ(Status(), port);
    Edit("30.04");
    EXPECT_EQ(Status(), "1 cell changed since opened   ·   " + port);
    ChartPress(session, PressKey::Shift, Cell{Column(1), Row(1)});
    ChartDrag(session, 32);
    ChartRelease(session);
    EXPECT_EQ(Status(), "128 cells changed since opened   ·   " + port);
    prompts.ExpectSave("/a.tbl");
    mnuSaveTable_Click(session);
    EXPECT_EQ(Status(), port) << "nothing differs from the file";

    UndoPressed(session);
    EXPECT_EQ(Status(), "Undone: Shift, 128 cells   ·   128 cells changed since saved   ·   " + port);
    UndoPressed(session);
    EXPECT_EQ(Text(kAt), "30.0");
    EXPECT_EQ(session.state.LastOutcome, "Undone: Edit, 1 cell");
    RedoPressed(session);
    EXPECT_EQ(Text(kAt), "30.04");
    EXPECT_EQ(session.state.LastOutcome, "Redone: Edit, 1 cell");
    UserActed(session);
    EXPECT_EQ(Status(), "128 cells changed since saved   ·   " + port);

    // A load is the end of every step before it.
    prompts.ExpectQuestion("Save advance table before opening file?", "Open File", Answer::No);
    prompts.ExpectOpen("/a.tbl");
    mnuOpenTable_Click(session);
    const Content loaded(session);
    UndoPressed(session);
    RedoPressed(session);
    EXPECT_EQ(Content(session), loaded);
    EXPECT_EQ(Status(), "Nothing to redo   ·   " + port);
    Edit("12");
    prompts.ExpectQuestion("Save advance table before closing file?", "Close File", Answer::No);
    mnuCloseTable_Click(session);
    const Content closed(session);
    UndoPressed(session);
    EXPECT_EQ(Content(session), closed) << "without a table on screen the keys do nothing";
}

}  // namespace
}  // namespace rv52::test
