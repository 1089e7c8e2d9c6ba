#include "GridFixture.h"
#include "table/GridCursor.h"

#include <QClipboard>
#include <QMenu>

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
