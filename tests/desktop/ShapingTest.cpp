#include "app/DesktopProgram.h"
#include "module/ModParamsDialog.h"
#include "support/ShownTable.h"
#include "table/GridView.h"
#include "table/Numbers.h"
#include "tour/Robot.h"

#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QTest>
#include <QWindow>

#include <gtest/gtest.h>

namespace rv52::test {
namespace {

// Shaping a table in the whole program: the grid's popup with its boxes, the parameters dialog, the gate.
class ShapingTest : public testing::Test {
 protected:
    ShapingTest() {
        EXPECT_TRUE(started_);
        Window().activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&Window()));
        grid_ = Window().findChild<GridView*>();
    }
    ~ShapingTest() override {
        EXPECT_TRUE(robot_.Done());
        for (const auto& problem : robot_.Problems())
            ADD_FAILURE() << problem;
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
        auto* menu = Window().findChild<QMenu*>(QStringLiteral("mnuPopUpEdit3D"));
        ASSERT_TRUE(menu->isVisible());
        auto* action = Window().findChild<QAction*>(QLatin1String(item));
        QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(action).center());
    }
    std::string Text(GridCell at) { return Running().sheet.Text(at); }

    MainWindow& Window() { return program_.Window(); }
    Session& Running() { return program_.Running(); }

    DesktopProgram program_{CommandLine{}};
    // The splash has come and gone before the robot looks for boxes.
    bool started_ = program_.Start(std::chrono::milliseconds(1));
    Robot robot_{program_.Window()};
    GridView* grid_ = nullptr;
};

TEST_F(ShapingTest, ModifiesCopiesAndPastesByThePopup) {
    for (const auto type : {TableType::RACE, TableType::EX}) {
        Show(type, 8);
        Select({2, 3}, {4, 5});
        robot_.ExpectInput("-7.5%");
        ChooseFromPopup("mnuPopUpModify3D");
        EXPECT_EQ(Text({2, 3}), "7.4");
        EXPECT_EQ(Running().table.Table().GetCell(CellAt({4, 5}, type)), 7.4);
        EXPECT_EQ(Text({5, 5}), "8.0");
        robot_.ExpectInput("");
        ChooseFromPopup("mnuPopUpModify3D");
        EXPECT_EQ(Text({2, 3}), "7.4");
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
    robot_.Type("99");
    robot_.ExpectBox("Advance must be numeric value between zero and 45 degrees.", "cmdOK");
    robot_.Choose("mnuFile", "mnuCloseTable");
    EXPECT_TRUE(Running().state.TableShown);
    EXPECT_TRUE(robot_.Done());
    robot_.Type("12");
    robot_.ExpectBox("Save advance table before closing file?", "cmdNo");
    robot_.Choose("mnuFile", "mnuCloseTable");
    EXPECT_EQ(Text({2, 3}), "12");
    EXPECT_FALSE(Running().state.TableShown);
    // Leaving the program asks nothing of an edit: it is given up.
    Show(TableType::RACE, 30);
    Select({2, 3}, {2, 3});
    robot_.Type("99");
    robot_.ExpectBox("Save advance table before exiting?", "cmdNo");
    Window().close();
    EXPECT_FALSE(Window().isVisible());
}

TEST_F(ShapingTest, MakesATableWithoutAMouse) {
    Show(TableType::RACE, 30);
    Running().state.ModuleParameters.RearOffset = 3;
    const auto use = [&](QWidget& dialog) {
        const auto press = [](Qt::Key key, int times = 1) {
            while (times-- > 0)
                QTest::keyClick(QApplication::focusWidget(), key);
        };
        EXPECT_EQ(dialog.objectName(), QStringLiteral("frmNewTable"));
        dialog.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
        EXPECT_FALSE(grid_->isVisible());
        press(Qt::Key_Up, 7);
        press(Qt::Key_Tab);
        press(Qt::Key_Up, 9);
        press(Qt::Key_Tab);
        press(Qt::Key_Space);
        EXPECT_TRUE(grid_->isVisible()) << "Update shows the table beside the dialog";
        press(Qt::Key_Escape);
        EXPECT_FALSE(dialog.isVisible());
    };
    robot_.ExpectBox("Save advance table before closing file?", "cmdNo");
    robot_.ExpectInput("ex");
    robot_.Expect("New Table", use);
    robot_.Choose("mnuFile", "mnuNewTable");
    EXPECT_EQ(Running().table.Table(), Running().state.ExMaxTable);
    EXPECT_EQ(Text({11, 16}), FormatTenths(Running().state.ExMaxTable.GetCell({16, 1})));
    EXPECT_EQ(Running().state.ModuleParameters.RearOffset, 0);
    EXPECT_EQ(Running().sheet.Cursor(), (GridCell{3, 3}));
    EXPECT_EQ(Window().windowHandle()->title(), QStringLiteral("Corvane RV52 Version 8.1"));
}

TEST_F(ShapingTest, ShowsAnyFilesNameInTheCaption) {
    Window().SetCaption("Corvane RV52 - my [*] table.tbl");
    EXPECT_EQ(Window().windowHandle()->title(), QStringLiteral("Corvane RV52 - my [*] table.tbl"));
}

TEST_F(ShapingTest, SetsModuleParametersWithoutAMouse) {
    robot_.Expect("parameters", [](QWidget& dialog) {
        const auto press = [](Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); };
        EXPECT_EQ(dialog.objectName(), QStringLiteral("frmModParams"));
        EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Corvane RV52 - Edit Module Parameters"));
        dialog.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
        const auto key = {Qt::Key_Tab, Qt::Key_Tab, Qt::Key_Space, Qt::Key_Tab,
                          Qt::Key_Up,  Qt::Key_Tab, Qt::Key_Down};
        for (const auto next : key)
            press(next);
        press(Qt::Key_Tab);
        QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("1500"));
        press(Qt::Key_Tab);
        press(Qt::Key_Tab);
        press(Qt::Key_PageUp);
        press(Qt::Key_Return);
        EXPECT_FALSE(dialog.isVisible());
    });
    robot_.Choose("mnuEdit", "mnuEditModParams");
    EXPECT_EQ(
        Running().state.ModuleParameters,
        (ModuleParameters{
            .RearOffset = -1, .CrankRevs = 1, .RPMLimit = 4000, .VSSFreq = 1500, .FixedLimFlag = true}));
}

}  // namespace
}  // namespace rv52::test
