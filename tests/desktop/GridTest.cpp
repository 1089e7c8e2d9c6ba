#include "app/Layout.h"
#include "support/IdleLine.h"
#include "support/ShownTable.h"
#include "support/TestSession.h"
#include "table/GridView.h"

#include <QAction>
#include <QClipboard>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QScrollBar>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

namespace rv52::test {
namespace {

// The grid at its first size in a window of its own, beside another place for the focus.
class GridTest : public testing::Test {
 protected:
    GridTest() {
        // The main window's first grid is 8880 × 1530 twips.
        grid.setGeometry(0, 0, 8880 / kTwipsPerPixel, 1530 / kTwipsPerPixel);
        elsewhere.setGeometry(0, 200, 100, 30);
        window.resize(640, 260);
        window.show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    }

    void Show(const AdvanceTable& table) { ShowAs(session, table); }
    void ShowRace() { Show(FlatTable(TableType::RACE, 30)); }
    void ShowEx() { Show(FlatTable(TableType::EX, 10)); }

    QPoint Middle(GridCell at) const {
        return grid.visualRect(grid.model()->index(at.row - 1, at.column - 1)).center();
    }
    void Click(GridCell at, Qt::KeyboardModifiers keys = {}) {
        QTest::mouseClick(grid.viewport(), Qt::LeftButton, keys, Middle(at));
    }
    void DoubleClick(GridCell at) {
        Click(at);
        QTest::mouseDClick(grid.viewport(), Qt::LeftButton, {}, Middle(at));
    }
    // To what has the focus, as a keyboard does.
    static void Key(Qt::Key key, Qt::KeyboardModifiers keys = {}) {
        QTest::keyClick(QApplication::focusWidget(), key, keys);
    }
    static void Type(const char* text) {
        for (; *text != 0; ++text)
            QTest::keyClick(QApplication::focusWidget(), *text);
    }

    QLineEdit* Editor() const {
        for (auto* editor : grid.findChildren<QLineEdit*>())
            if (editor->isVisible()) return editor;
        return nullptr;
    }
    std::string Text(GridCell at) const { return session.sheet.Text(at); }
    double Degrees(GridCell at) const {
        return session.table.Table().GetCell(CellAt(at, session.table.Table().Type()));
    }
    GridCell Cursor() const { return session.sheet.Cursor(); }
    GridRange Selection() const { return session.sheet.Selection(); }

    // Through the window system's own way, which makes the popup's event of a right click.
    void ClickInWindow(Qt::MouseButton button, QPoint inGrid) {
        QTest::mouseClick(window.windowHandle(), button, {}, grid.mapTo(&window, inGrid));
    }
    QAction* Item(const char* name) const { return grid.findChild<QAction*>(QLatin1String(name)); }

    IdleLine line;
    TestSession test{line};
    Session& session = test.session;
    QWidget window;
    GridView grid{session, [](const auto& event) { event(); },
                  [this](const auto& command) {
                      if (grid.CommitEditor()) command(session);
                  },
                  &window};
    QLineEdit elsewhere{&window};
};

TEST_F(GridTest, HasNoCurrentCellAfterLoadingUntilAKeyOrAClick) {
    elsewhere.setFocus();
    ShowRace();
    grid.setFocus(Qt::TabFocusReason);
    EXPECT_FALSE(grid.currentIndex().isValid() || grid.selectionModel()->hasSelection());
    EXPECT_FALSE(session.chart.Label().shown);
    Type("5");
    Key(Qt::Key_F2);
    EXPECT_EQ(Editor(), nullptr);

    Key(Qt::Key_Down);
    EXPECT_EQ(Cursor(), (GridCell{1, 1}));
    EXPECT_EQ(session.chart.Label(), (ValueLabel{true, {1, 8}, "30.0"}));

    ShowEx();
    EXPECT_FALSE(grid.currentIndex().isValid());
    Click({11, 16});
    EXPECT_EQ(session.chart.Label(), (ValueLabel{true, {16, 1}, "10.0"}));
}

TEST_F(GridTest, PaintsTheCurrentCellAndTheSelectionInTheSelectionColours) {
    ShowRace();
    const auto lit = [&](GridCell at) {
        const auto place = grid.visualRect(grid.model()->index(at.row - 1, at.column - 1));
        const auto ground = grid.viewport()->grab(place).toImage().pixelColor(1, 0);
        const bool chosen = ground == grid.palette().color(QPalette::Active, QPalette::Highlight);
        EXPECT_TRUE(chosen || ground == grid.palette().color(QPalette::Active, QPalette::Base));
        return chosen;
    };
    Click({3, 4});
    EXPECT_TRUE(lit({3, 4}));
    Click({5, 6});
    Click({6, 8}, Qt::ShiftModifier);
    EXPECT_TRUE(lit({5, 6}) && lit({5, 7}));
    EXPECT_FALSE(lit({3, 4}) || lit({7, 7}));
}

TEST_F(GridTest, HeadersAndTheEmptyStripSelectNothing) {
    ShowRace();
    Click({2, 3});
    for (auto* header : {grid.horizontalHeader(), grid.verticalHeader()}) {
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, {20, 5});
        QTest::mouseDClick(header->viewport(), Qt::LeftButton, {}, {20, 5});
    }
    QTest::mouseClick(grid.childAt(5, 5), Qt::LeftButton, {}, {3, 3});
    window.resize(900, 400);
    grid.resize(800, 120);
    QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, QPoint(5, grid.viewport()->height() - 1));
    EXPECT_EQ(Selection(), (GridRange{{2, 3}, {2, 3}}));
    EXPECT_EQ(session.chart.Label(), (ValueLabel{true, {3, 7}, "30.0"}));
    EXPECT_EQ(grid.currentIndex(), grid.model()->index(1, 2));
}

TEST_F(GridTest, SelectsOneRectangleByMouseAndKeys) {
    ShowRace();
    QTest::mousePress(grid.viewport(), Qt::LeftButton, {}, Middle({2, 3}));
    QTest::mouseMove(grid.viewport(), Middle({3, 5}));
    QMouseEvent drag(QEvent::MouseMove, Middle({4, 6}), grid.viewport()->mapToGlobal(Middle({4, 6})),
                     Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(grid.viewport(), &drag);
    QTest::mouseRelease(grid.viewport(), Qt::LeftButton, {}, Middle({4, 6}));
    EXPECT_EQ(Selection(), (GridRange{{2, 3}, {4, 6}}));
    EXPECT_EQ(Cursor(), (GridCell{4, 6}));

    Click({5, 5});
    Key(Qt::Key_Left, Qt::ShiftModifier);
    EXPECT_EQ(Selection(), (GridRange{{5, 4}, {5, 5}}));
    EXPECT_EQ(Cursor(), (GridCell{5, 4}));
    Key(Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(Selection(), (GridRange{{1, 1}, {8, 16}}));

    SelectGridCells(session, {{1, 2}, {3, 4}}, {1, 2});
    EXPECT_EQ(grid.currentIndex(), grid.model()->index(0, 1));
    EXPECT_EQ(grid.selectionModel()->selectedIndexes().size(), 9);
}

TEST_F(GridTest, KeepsRowsAndColumnsToTheirShares) {
    ShowRace();
    EXPECT_EQ(grid.rowHeight(7), 11);
    EXPECT_EQ(grid.horizontalHeader()->height(), 11);
    EXPECT_FALSE(grid.verticalScrollBar()->isVisible());
    ShowEx();
    EXPECT_EQ(grid.rowHeight(10), 11);
    EXPECT_TRUE(grid.verticalScrollBar()->isVisible());
    for (const auto& size : {QSize(592, 102), QSize(1200, 400), QSize(333, 90), QSize(40, 10), QSize(0, 0)}) {
        grid.resize(size);
        EXPECT_EQ(grid.horizontalScrollBar()->maximum(), 0) << size.width();
        EXPECT_GE(grid.viewport()->width(), grid.horizontalHeader()->length()) << size.width();
    }
    grid.resize(1200, 400);
    // 1 pixel of frame at each side: floor(398 · 15 / 9) − 1 twips.
    EXPECT_EQ(grid.rowHeight(0), 662 / kTwipsPerPixel);
    EXPECT_EQ(grid.font().pointSizeF(), 8.25);
}

TEST_F(GridTest, AcceptsATypedAdvanceHoweverTheEditEnds) {
    ShowRace();
    const struct {
        const char* text;
        std::function<void()> end;
        GridCell cursor;
    } edits[] = {{"12.34", [] { Key(Qt::Key_Return); }, {2, 3}},
                 {"7", [] { Key(Qt::Key_Tab); }, {2, 4}},
                 {"8", [] { Key(Qt::Key_Down); }, {3, 3}},
                 {"9",
                  [&] {
                      Click({1, 1});
                  },
                  {1, 1}},
                 {"45", [&] { elsewhere.setFocus(); }, {2, 3}}};
    for (const auto& [text, end, cursor] : edits) {
        Click({2, 3});
        Type(text);
        ASSERT_NE(Editor(), nullptr);
        EXPECT_GE(Editor()->height(), Editor()->fontMetrics().height());
        end();
        EXPECT_EQ(Editor(), nullptr);
        EXPECT_EQ(Text({2, 3}), text);
        EXPECT_EQ(Degrees({2, 3}), std::stod(text));
        EXPECT_EQ(Cursor(), cursor) << text;
        EXPECT_NE(grid.hasFocus(), elsewhere.hasFocus());
    }
    Click({2, 3});
    Key(Qt::Key_F2);
    EXPECT_EQ(Editor()->selectedText(), QStringLiteral("45"));
    DoubleClick({5, 5});
    EXPECT_EQ(Editor()->selectedText(), QStringLiteral("30.0"));
}

TEST_F(GridTest, AbandonsAnEdit) {
    ShowRace();
    Click({2, 3});
    // Nothing is refused when the program lets go of an edit that the keyboard started.
    const std::function<void()> ways[] = {[] { Key(Qt::Key_Escape); }, [&] { grid.AbandonEditor(); },
                                          [&] { ShowEx(); }};
    for (const auto& abandon : ways) {
        EXPECT_EQ(Text({2, 3}), "30.0");
        EXPECT_TRUE(grid.hasFocus());
        Type("abc");
        ASSERT_NE(Editor(), nullptr);
        abandon();
        EXPECT_EQ(Editor(), nullptr);
    }
}

// Each way of ending an edit asks once, and the editor stays with its text selected.
TEST_F(GridTest, RefusesOnceAndKeepsTheEditorOpen) {
    ShowRace();
    std::size_t refusals = 0;
    // The box as the desktop shows it: a window of its own that takes the focus.
    test.prompts.whileOpen = [&] {
        ++refusals;
        QMessageBox box(QMessageBox::Critical, QString(), QString(), QMessageBox::Ok, &window);
        QTimer::singleShot(0, &box, [&] { QTest::keyClick(&box, Qt::Key_Return); });
        box.exec();
    };
    const std::vector<std::function<void()>> ends{
        [&] { Key(Qt::Key_Return); },
        [&] { Key(Qt::Key_Tab); },
        [&] { Key(Qt::Key_Up); },
        [&] {
            ClickInWindow(Qt::LeftButton, grid.viewport()->mapTo(&grid, Middle({6, 6})));
        },
        [&] {
            ClickInWindow(Qt::RightButton, grid.viewport()->mapTo(&grid, Middle({6, 6})));
        },
        [&] { QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, elsewhere.geometry().center()); },
        [&] { elsewhere.setFocus(); },
        [&] { EXPECT_FALSE(grid.CommitEditor()); },
    };
    Click({2, 3});
    Type("45.01");
    for (std::size_t end = 0; end < ends.size(); ++end) {
        test.prompts.Expect({"Advance must be numeric value between zero and 45 degrees.", "Advance Edit",
                             Icon::Critical, Buttons::Ok},
                            Answer::Ok);
        ends[end]();
        // As a window manager does once the box is gone.
        window.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
        ASSERT_NE(Editor(), nullptr) << end;
        EXPECT_TRUE(Editor()->hasFocus()) << end;
        EXPECT_EQ(Editor()->selectedText(), QStringLiteral("45.01")) << end;
        EXPECT_EQ(refusals, end + 1) << end;
        EXPECT_EQ(QApplication::activePopupWidget(), nullptr) << end;
        EXPECT_EQ(Cursor(), (GridCell{2, 3})) << end;
    }
    // Looking something up in another window is no end of an edit.
    QWidget another;
    another.show();
    another.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&another));
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    EXPECT_EQ(Text({2, 3}), "30.0");
    Type("44");
    Key(Qt::Key_Return);
    EXPECT_EQ(Text({2, 3}), "44");
}

TEST_F(GridTest, OpensNoEditorOnAnExTableOrWhileACommandRuns) {
    for (const auto type : {TableType::EX, TableType::RACE}) {
        Show(FlatTable(type, 10));
        Click({2, 3});
        std::optional<CommandGate::Stay> stay;
        if (type == TableType::RACE) stay.emplace(session.gate);
        Type("5");
        Key(Qt::Key_F2);
        DoubleClick({4, 4});
        EXPECT_EQ(Editor(), nullptr);
    }
}

TEST_F(GridTest, OffersItsCommandsWhereTheyAreAskedFor) {
    ShowRace();
    auto* menu = grid.findChild<QMenu*>(QStringLiteral("mnuPopUpEdit3D"));
    ASSERT_NE(menu, nullptr);
    const auto close = [&] {
        EXPECT_EQ(QApplication::activePopupWidget(), menu);
        menu->close();
    };
    SelectGridCells(session, {{2, 3}, {4, 5}}, {4, 5});
    ClickInWindow(Qt::RightButton, grid.viewport()->mapTo(&grid, Middle({7, 7})));
    close();
    ClickInWindow(Qt::RightButton, {5, 5});
    close();
    EXPECT_EQ(Cursor(), (GridCell{4, 5}));
    EXPECT_EQ(Selection(), (GridRange{{2, 3}, {4, 5}}));
    EXPECT_EQ(menu->actions().size(), 3);
    EXPECT_FALSE(Item("mnuPopupPaste3D")->isEnabled());

    grid.setFocus();
    Key(Qt::Key_Menu);
    close();
    session.state.CopyBuffer = "30.0";
    Key(Qt::Key_F10, Qt::ShiftModifier);
    EXPECT_TRUE(Item("mnuPopupPaste3D")->isEnabled());
    close();
}

TEST_F(GridTest, CopiesAndPastesByShortcut) {
    ShowRace();
    QApplication::clipboard()->setText(QStringLiteral("mine"));
    session.sheet.SetText({2, 3}, "12.5");
    Click({2, 3});
    Key(Qt::Key_C, Qt::ControlModifier);
    Click({4, 4});
    Click({5, 6}, Qt::ShiftModifier);
    Key(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(Text({4, 4}), "12.5");
    EXPECT_EQ(Degrees({5, 6}), 12.5);
    EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("mine"));
}

class PaintCount : public QObject {
 public:
    bool eventFilter(QObject*, QEvent* event) override {
        count += event->type() == QEvent::Paint;
        return false;
    }
    int count = 0;
};

TEST_F(GridTest, RepaintsOnceForAHeldChange) {
    ShowRace();
    QTest::qWait(1);
    PaintCount paints;
    grid.viewport()->installEventFilter(&paints);
    CopyChartToGrid(session);
    QTest::qWait(1);
    EXPECT_EQ(paints.count, 1);
}

}  // namespace
}  // namespace rv52::test
