#include "ProgramFixture.h"
#include "support/ShownTable.h"
#include "table/GridView.h"
#include "table/Numbers.h"

#include <QWindow>

namespace rv52::test {
namespace {

// Shaping a table in the whole program: the grid's popup with its boxes, the new table, the gate.
class ShapingTest : public ProgramFixture {
 protected:
    void SetUp() override {
        Start();
        grid_ = Window().findChild<GridView*>();
    }
    void Show(TableType type, double degrees) { ShowAs(Running(), FlatTable(type, degrees)); }
    void Select(GridCell first, GridCell last) {
        const auto middle = [&](GridCell at) {
            return grid_->visualRect(grid_->model()->index(at.row - 1, at.column - 1)).center();
        };
        QTest::mouseClick(grid_->viewport(), Qt::LeftButton, {}, middle(first));
        QTest::mouseClick(grid_->viewport(), Qt::LeftButton, Qt::ShiftModifier, middle(last));
    }
    void ChooseFromPopup(const char* item) {
        QTest::mouseClick(Window().windowHandle(), Qt::RightButton, {},
                          grid_->mapTo(&Window(), QPoint(200, 50)));
        robot_->ChooseFromPopup("mnuPopUpEdit3D", item);
    }
    std::string Text(GridCell at) { return Running().sheet.Text(at); }

    GridView* grid_ = nullptr;
};

TEST_F(ShapingTest, ModifiesCopiesAndPastesByThePopup) {
    for (const auto type : {TableType::RACE, TableType::EX}) {
        Show(type, 8);
        Select({2, 3}, {4, 5});
        robot_->ExpectInput("-7.5%");
        ChooseFromPopup("mnuPopUpModify3D");
        EXPECT_EQ(Text({2, 3}), "7.4");
        EXPECT_EQ(Running().table.Table().GetCell(CellAt({4, 5}, type)), 7.4);
        EXPECT_EQ(Text({5, 5}), "8.0");
        ChooseFromPopup("mnuPopUpCopy3D");
        Select({6, 10}, {6, 10});
        ChooseFromPopup("mnuPopupPaste3D");
        EXPECT_EQ(Text({8, 12}), "7.4");
        EXPECT_EQ(grid_->selectionModel()->selectedIndexes().size(), 9);
    }
}

TEST_F(ShapingTest, NoCommandStartsOnARefusedText) {
    Show(TableType::RACE, 30);
    Select({2, 3}, {2, 3});
    robot_->Type("99");
    robot_->ExpectBox("Advance must be numeric value between zero and 45 degrees.", "cmdOK");
    robot_->Choose("mnuFile", "mnuCloseTable");
    EXPECT_TRUE(State().TableShown);
    EXPECT_TRUE(robot_->Done());
    robot_->Type("12");
    robot_->ExpectBox("Save advance table before closing file?", "cmdNo");
    robot_->Choose("mnuFile", "mnuCloseTable");
    EXPECT_EQ(Text({2, 3}), "12");
    EXPECT_FALSE(State().TableShown);
    // Leaving the program asks nothing of an edit: it is given up.
    Show(TableType::RACE, 30);
    Select({2, 3}, {2, 3});
    robot_->Type("99");
    robot_->ExpectBox("Save advance table before exiting?", "cmdNo");
    Window().close();
    EXPECT_FALSE(Window().isVisible());
}

TEST_F(ShapingTest, MakesATableWithoutAMouse) {
    Show(TableType::RACE, 30);
    robot_->ExpectBox("Save advance table before closing file?", "cmdNo");
    robot_->ExpectInput("ex");
    robot_->Expect("New Table", [&](QWidget& dialog) {
        EXPECT_EQ(dialog.objectName(), QStringLiteral("frmNewTable"));
        dialog.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
        EXPECT_FALSE(grid_->isVisible());
        std::vector keys(7, Qt::Key_Up);
        keys.push_back(Qt::Key_Tab);
        keys.insert(keys.end(), 9, Qt::Key_Up);
        keys.insert(keys.end(), {Qt::Key_Tab, Qt::Key_Space});
        for (const auto key : keys)
            QTest::keyClick(QApplication::focusWidget(), key);
        EXPECT_TRUE(grid_->isVisible()) << "Update shows the table beside the dialog";
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
        EXPECT_FALSE(dialog.isVisible());
    });
    robot_->Choose("mnuFile", "mnuNewTable");
    EXPECT_EQ(Running().table.Table(), State().ExMaxTable);
    EXPECT_EQ(Text({11, 16}), FormatTenths(State().ExMaxTable.GetCell({16, 1})));
}

}  // namespace
}  // namespace rv52::test
