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
    SelectGridCells(session, {kCell, At(4, 5)}, At(4, 5));
    grid.setFocus();
    const std::pair<const char*, Act> ways[] = {
        {"on a cell", [&] { ClickCell(At(7, 7), Qt::NoModifier, Qt::RightButton); }},
        {"on the corner", [&] { Click(grid, QPoint(5, 5), Qt::RightButton); }},
        {"the menu key", [] { Key(Qt::Key_Menu); }},
        {"Shift+F10", [] { Key(Qt::Key_F10, Qt::ShiftModifier); }}};
    for (const auto& [way, ask] : ways) {
        SCOPED_TRACE(way);
        ask();
        EXPECT_EQ(QApplication::activePopupWidget(), &menu);
        EXPECT_EQ(paste.isEnabled(), !session.state.CopyBuffer.empty());
        menu.close();
        session.state.CopyBuffer = "30.0";
        EXPECT_EQ(Cursor(), At(4, 5));
        EXPECT_EQ(Selection(), (GridRange{kCell, At(4, 5)}));
    }
}

TEST_F(GridTest, TheMenusItemsAnswerToTheirFirstLetters) {
    auto& menu = Find<GridMenu>(grid, "mnuPopUpEdit3D");
    Show(TableType::RACE);
    const auto chooses = [&](char letter, Qt::KeyboardModifiers keys = {}) {
        menu.ShowAt(grid.mapToGlobal(QPoint(50, 50)));
        QTest::keyClick(&menu, letter, keys);
        const bool chosen = !menu.isVisible();
        menu.close();
        return chosen;
    };
    EXPECT_FALSE(chooses('p')) << "there is nothing to paste yet";
    for (const auto& style : QStyleFactory::keys()) {
        SCOPED_TRACE(FromQt(style));
        auto* look = QStyleFactory::create(style);
        look->setParent(&menu);
        menu.setStyle(look);
        SelectGridCells(session, {kCell, kCell}, kCell);
        EXPECT_TRUE(chooses('c'));
        EXPECT_EQ(session.state.CopyBuffer, "30.0");
        session.state.CopyBuffer = "12";
        SelectGridCells(session, {At(4, 4), At(4, 4)}, At(4, 4));
        EXPECT_TRUE(chooses('P', Qt::ShiftModifier));
        EXPECT_EQ(Text(At(4, 4)), "12");
        EXPECT_FALSE(chooses('x'));
    }
}

TEST_F(GridTest, CopiesAndPastesByShortcutWithoutTheDesktopsClipboard) {
    Show(TableType::RACE);
    QApplication::clipboard()->setText(QStringLiteral("mine"));
    session.sheet.SetText(kCell, "12.5");
    ClickCell(kCell);
    Key(Qt::Key_C, Qt::ControlModifier);
    ClickCell(At(4, 4));
    ClickCell(At(5, 6), Qt::ShiftModifier);
    Key(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(Text(At(4, 4)) + " " + Text(At(5, 6)), "12.5 12.5");
    EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("mine"));
}

}  // namespace rv52::test
