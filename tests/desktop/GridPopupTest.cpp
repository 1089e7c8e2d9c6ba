#include "GridFixture.h"
#include "table/commands/GridCursor.h"
#include "table/ui/GridMenu.h"

#include <QClipboard>
#include <QMenu>
#include <QStyle>
#include <QStyleFactory>

namespace rv52::test {

TEST_F(GridTest, OffersItsCommandsWhereTheyAreAskedFor) {
    Show(TableType::RACE);
    auto& menu = Find<QMenu>(grid, "mnuPopUpEdit3D");
    const auto& paste = Find<QAction>(grid, "mnuPopupPaste3D");
    SelectGridCells(session, {{2, 3}, {4, 5}}, {4, 5});
    const Act ways[] = {[&] {
                            ClickCell({7, 7}, {}, Qt::RightButton);
                        },
                        [&] {
                            Click(grid, {5, 5}, Qt::RightButton);
                        },
                        [&] {
                            EXPECT_FALSE(paste.isEnabled());
                            grid.setFocus();
                            Key(Qt::Key_Menu);
                        },
                        [&] {
                            session.state.CopyBuffer = "30.0";
                            Key(Qt::Key_F10, Qt::ShiftModifier);
                        }};
    for (const auto& ask : ways) {
        ask();
        EXPECT_EQ(QApplication::activePopupWidget(), &menu);
        menu.close();
        EXPECT_EQ(Cursor(), (GridCell{4, 5}));
        EXPECT_EQ(Selection(), (GridRange{{2, 3}, {4, 5}}));
    }
    EXPECT_TRUE(paste.isEnabled());
}

TEST_F(GridTest, TheMenusItemsAnswerToTheirFirstLetters) {
    auto& menu = Find<GridMenu>(grid, "mnuPopUpEdit3D");
    Show(TableType::RACE);
    const auto choose = [&](char letter, Qt::KeyboardModifiers keys = {}) {
        const int before = commands;
        menu.ShowAt(grid.mapToGlobal(QPoint(50, 50)));
        QTest::keyClick(&menu, letter, keys);
        EXPECT_EQ(menu.isVisible(), commands == before) << letter;
        menu.close();
        return commands - before;
    };
    EXPECT_EQ(choose('p'), 0) << "there is nothing to paste yet";
    for (const auto& style : QStyleFactory::keys()) {
        SCOPED_TRACE(FromQt(style));
        auto* look = QStyleFactory::create(style);
        look->setParent(&menu);
        menu.setStyle(look);
        SelectGridCells(session, {{2, 3}, {2, 3}}, {2, 3});
        EXPECT_EQ(choose('c'), 1);
        EXPECT_EQ(session.state.CopyBuffer, "30.0");
        session.state.CopyBuffer = "12";
        SelectGridCells(session, {{4, 4}, {4, 4}}, {4, 4});
        EXPECT_EQ(choose('P', Qt::ShiftModifier), 1);
        EXPECT_EQ(Text({4, 4}), "12");
        commandsRun = false;
        EXPECT_EQ(choose('m'), 1);
        EXPECT_EQ(choose('x'), 0);
        commandsRun = true;
    }
}

TEST_F(GridTest, CopiesAndPastesByShortcutWithoutTheDesktopsClipboard) {
    Show(TableType::RACE);
    QApplication::clipboard()->setText(QStringLiteral("mine"));
    session.sheet.SetText({2, 3}, "12.5");
    ClickCell({2, 3});
    Key(Qt::Key_C, Qt::ControlModifier);
    ClickCell({4, 4});
    ClickCell({5, 6}, Qt::ShiftModifier);
    Key(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(Text({4, 4}), "12.5");
    EXPECT_EQ(Degrees({5, 6}), 12.5);
    EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("mine"));
}

}  // namespace rv52::test
