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
    SelectGridCells(session, {{GridRow(2), GridColumn(3)}, {GridRow(4), GridColumn(5)}},
                    {GridRow(4), GridColumn(5)});
    const Act ways[] = {[&] {
                            ClickCell({GridRow(7), GridColumn(7)}, {}, Qt::RightButton);
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
        EXPECT_EQ(Cursor(), (GridCell{GridRow(4), GridColumn(5)}));
        EXPECT_EQ(Selection(), (GridRange{{GridRow(2), GridColumn(3)}, {GridRow(4), GridColumn(5)}}));
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
        SelectGridCells(session, {{GridRow(2), GridColumn(3)}, {GridRow(2), GridColumn(3)}},
                        {GridRow(2), GridColumn(3)});
        EXPECT_EQ(choose('c'), 1);
        EXPECT_EQ(session.state.CopyBuffer, "30.0");
        session.state.CopyBuffer = "12";
        SelectGridCells(session, {{GridRow(4), GridColumn(4)}, {GridRow(4), GridColumn(4)}},
                        {GridRow(4), GridColumn(4)});
        EXPECT_EQ(choose('P', Qt::ShiftModifier), 1);
        EXPECT_EQ(Text({GridRow(4), GridColumn(4)}), "12");
        commandsRun = false;
        EXPECT_EQ(choose('m'), 1);
        EXPECT_EQ(choose('x'), 0);
        commandsRun = true;
    }
}

TEST_F(GridTest, CopiesAndPastesByShortcutWithoutTheDesktopsClipboard) {
    Show(TableType::RACE);
    QApplication::clipboard()->setText(QStringLiteral("mine"));
    session.sheet.SetText({GridRow(2), GridColumn(3)}, "12.5");
    ClickCell({GridRow(2), GridColumn(3)});
    Key(Qt::Key_C, Qt::ControlModifier);
    ClickCell({GridRow(4), GridColumn(4)});
    ClickCell({GridRow(5), GridColumn(6)}, Qt::ShiftModifier);
    Key(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(Text({GridRow(4), GridColumn(4)}), "12.5");
    EXPECT_EQ(Degrees({GridRow(5), GridColumn(6)}), 12.5);
    EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("mine"));
}

}  // namespace rv52::test
