#include "GridFixture.h"

#include <QAccessible>
#include <QAction>
#include <QClipboard>
#include <QHeaderView>
#include <QMenu>
#include <QMessageBox>
#include <QScrollBar>
#include <QTimer>

namespace rv52::test {
namespace {

class GridTest : public GridFixture {
 protected:
    // Through the window system's own way, which makes the popup's event of a right click.
    void RightClick(QPoint inGrid) {
        QTest::mouseClick(window.windowHandle(), Qt::RightButton, {}, grid.mapTo(&window, inGrid));
    }
    QAction* Item(const char* name) const { return grid.findChild<QAction*>(QLatin1String(name)); }

    int refusals = 0;
};

// Cell colours as painted: what most of a cell's pixels are.
QColor Ground(const QWidget& viewport, const QRect& cell) {
    const auto image = const_cast<QWidget&>(viewport).grab(cell).toImage();
    return image.pixelColor(1, 0);
}

TEST_F(GridTest, HasNoCurrentCellAfterLoadingUntilAKeyOrAClick) {
    elsewhere.setFocus();
    ShowRace();
    grid.setFocus(Qt::TabFocusReason);
    EXPECT_FALSE(grid.currentIndex().isValid());
    EXPECT_TRUE(grid.selectionModel()->selection().isEmpty());
    EXPECT_FALSE(session.chart.Label().shown);
    for (const char key : {'5', 'x'})
        QTest::keyClick(&grid, key);
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
    const auto ground = [&](GridCell at) {
        return Ground(*grid.viewport(), grid.visualRect(grid.model()->index(at.row - 1, at.column - 1)));
    };
    const auto lit = grid.palette().color(QPalette::Active, QPalette::Highlight);
    const auto plain = grid.palette().color(QPalette::Active, QPalette::Base);
    EXPECT_EQ(ground({3, 4}), plain);
    Click({3, 4});
    EXPECT_EQ(ground({3, 4}), lit);
    Click({5, 6});
    EXPECT_EQ(ground({3, 4}), plain);
    EXPECT_EQ(ground({5, 6}), lit);
    Click({6, 8}, Qt::ShiftModifier);
    EXPECT_EQ(ground({5, 7}), lit);
    EXPECT_EQ(ground({7, 7}), plain);
}

TEST_F(GridTest, HeadersAndTheEmptyStripSelectNothing) {
    ShowRace();
    Click({2, 3});
    const auto label = session.chart.Label();
    for (auto* header : {grid.horizontalHeader(), grid.verticalHeader()}) {
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, {20, 5});
        QTest::mouseDClick(header->viewport(), Qt::LeftButton, {}, {20, 5});
    }
    QTest::mouseClick(grid.childAt(5, 5), Qt::LeftButton, {}, {3, 3});
    window.resize(900, 400);
    grid.resize(800, 120);
    QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, QPoint(5, grid.viewport()->height() - 1));
    EXPECT_EQ(Cursor(), (GridCell{2, 3}));
    EXPECT_EQ(Selection(), (GridRange{{2, 3}, {2, 3}}));
    EXPECT_EQ(session.chart.Label(), label);
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
    Key(Qt::Key_Up, Qt::ShiftModifier);
    Key(Qt::Key_Left, Qt::ShiftModifier);
    EXPECT_EQ(Selection(), (GridRange{{4, 4}, {5, 5}}));
    EXPECT_EQ(Cursor(), (GridCell{4, 4}));
    Key(Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(Selection(), (GridRange{{1, 1}, {8, 16}}));

    SelectGridCells(session, {{1, 2}, {3, 4}}, {1, 2});
    EXPECT_EQ(grid.currentIndex(), grid.model()->index(0, 1));
    EXPECT_EQ(grid.selectionModel()->selectedIndexes().size(), 9);
}

TEST_F(GridTest, KeepsRowsAndColumnsToTheirShares) {
    ShowRace();
    EXPECT_EQ(grid.rowHeight(0), 11);
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

TEST_F(GridTest, IsReachableThroughTheAccessibilityTree) {
    ShowRace();
    auto* table = QAccessible::queryAccessibleInterface(&grid);
    ASSERT_NE(table, nullptr);
    ASSERT_NE(table->tableInterface(), nullptr);
    EXPECT_EQ(table->role(), QAccessible::Table);
    EXPECT_EQ(table->text(QAccessible::Name), QStringLiteral("Advance table"));
    EXPECT_EQ(table->text(QAccessible::Description), QStringLiteral("MAP/RPM"));
    EXPECT_EQ(table->tableInterface()->rowDescription(0), QStringLiteral("16"));
    EXPECT_EQ(table->tableInterface()->columnDescription(15), QStringLiteral("7500"));
    auto* cell = table->tableInterface()->cellAt(7, 15);
    EXPECT_EQ(cell->role(), QAccessible::Cell);
    EXPECT_EQ(cell->text(QAccessible::Name), QStringLiteral("30.0"));
}

TEST_F(GridTest, AcceptsATypedAdvance) {
    ShowRace();
    Click({2, 3});
    Type("12.34");
    ASSERT_NE(Editor(), nullptr);
    EXPECT_GE(Editor()->height(), Editor()->fontMetrics().height());
    Key(Qt::Key_Return);
    EXPECT_EQ(Editor(), nullptr);
    EXPECT_EQ(Text({2, 3}), "12.34");
    EXPECT_EQ(Degrees({2, 3}), 12.34);
    EXPECT_EQ(session.chart.Label(), (ValueLabel{true, {3, 7}, "12.3"}));
    EXPECT_TRUE(grid.hasFocus());

    Key(Qt::Key_F2);
    EXPECT_EQ(Editor()->selectedText(), QStringLiteral("12.34"));
    Type("7");
    Key(Qt::Key_Tab);
    EXPECT_EQ(Text({2, 3}), "7");
    EXPECT_EQ(Cursor(), (GridCell{2, 4}));

    Type("8");
    Key(Qt::Key_Down);
    EXPECT_EQ(Text({2, 4}), "8");
    EXPECT_EQ(Cursor(), (GridCell{3, 4}));

    DoubleClick({5, 5});
    EXPECT_EQ(Editor()->selectedText(), QStringLiteral("30.0"));
    Type("9");
    Click({1, 1});
    EXPECT_EQ(Text({5, 5}), "9");
    EXPECT_EQ(Cursor(), (GridCell{1, 1}));

    Type("45");
    elsewhere.setFocus();
    EXPECT_EQ(Text({1, 1}), "45");
    EXPECT_TRUE(elsewhere.hasFocus());
}

TEST_F(GridTest, AbandonsAnEdit) {
    ShowRace();
    Click({2, 3});
    Type("99");
    Key(Qt::Key_Escape);
    EXPECT_EQ(Editor(), nullptr);
    EXPECT_TRUE(grid.hasFocus());
    Type("abc");
    grid.AbandonEditor();
    EXPECT_EQ(Editor(), nullptr);
    EXPECT_EQ(Text({2, 3}), "30.0");
    EXPECT_EQ(Degrees({2, 3}), 30);
    // Nothing is refused when the program lets go of an edit that the keyboard started.
    Type("abc");
    ShowEx();
    EXPECT_EQ(Editor(), nullptr);
}

// Each way of ending an edit asks once, and the editor stays with its text selected.
TEST_F(GridTest, RefusesOnceAndKeepsTheEditorOpen) {
    ShowRace();
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
            QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {},
                              grid.viewport()->mapTo(&window, Middle({6, 6})));
        },
        [&] {
            QTest::mouseClick(window.windowHandle(), Qt::RightButton, {},
                              grid.viewport()->mapTo(&window, Middle({6, 6})));
        },
        [&] { QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, elsewhere.geometry().center()); },
        [&] { elsewhere.setFocus(); },
        [&] { EXPECT_FALSE(grid.CommitEditor()); },
    };
    Click({2, 3});
    Type("45.01");
    for (std::size_t end = 0; end < ends.size(); ++end) {
        ExpectRefusal();
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
    EXPECT_EQ(Text({2, 3}), "30.0");
    Type("44");
    Key(Qt::Key_Return);
    EXPECT_EQ(Text({2, 3}), "44");
}

// Looking something up in another window is no end of an edit.
TEST_F(GridTest, StaysInItsEditorWhileAnotherWindowIsActive) {
    ShowRace();
    Click({2, 3});
    Type("99");
    QWidget another;
    another.show();
    another.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&another));
    EXPECT_NE(Editor(), nullptr);
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    Key(Qt::Key_Escape);
    EXPECT_EQ(Text({2, 3}), "30.0");
}

TEST_F(GridTest, CommandsWaitForAnAcceptableText) {
    ShowRace();
    Click({2, 3});
    Type("abc");
    ExpectRefusal();
    Item("mnuPopUpCopy3D")->trigger();
    EXPECT_EQ(session.state.CopyBuffer, "");
    Type("20");
    Item("mnuPopUpCopy3D")->trigger();
    EXPECT_EQ(session.state.CopyBuffer, "20");
}

TEST_F(GridTest, OpensNoEditorOnAnExTableOrWhileACommandRuns) {
    ShowEx();
    Click({2, 3});
    Type("5");
    Key(Qt::Key_F2);
    DoubleClick({4, 4});
    EXPECT_EQ(Editor(), nullptr);
    EXPECT_EQ(Cursor(), (GridCell{4, 4}));

    ShowRace();
    Click({2, 3});
    const CommandGate::Stay stay(session.gate);
    Type("5");
    DoubleClick({4, 4});
    EXPECT_EQ(Editor(), nullptr);
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
    RightClick(grid.viewport()->mapTo(&grid, Middle({7, 7})));
    close();
    RightClick({5, 5});
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
    Click({2, 3});
    Type("12.5");
    Key(Qt::Key_Return);
    Key(Qt::Key_V, Qt::ControlModifier);
    Key(Qt::Key_C, Qt::ControlModifier);
    EXPECT_TRUE(Item("mnuPopupPaste3D")->isEnabled());
    Click({4, 4});
    Click({5, 6}, Qt::ShiftModifier);
    Key(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(Text({4, 4}), "12.5");
    EXPECT_EQ(Degrees({5, 6}), 12.5);
    EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("mine"));
}

class PaintCount : public QObject {
 public:
    explicit PaintCount(QWidget& watched) { watched.installEventFilter(this); }
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint) ++count;
        return false;
    }
    int count = 0;
};

TEST_F(GridTest, RepaintsOnceForAHeldChange) {
    ShowRace();
    QTest::qWait(1);
    int notified = 0;
    QObject::connect(grid.model(), &QAbstractItemModel::dataChanged, &grid, [&] { ++notified; });
    PaintCount paints(*grid.viewport());
    CopyChartToGrid(session);
    QTest::qWait(1);
    EXPECT_EQ(notified, 1);
    EXPECT_EQ(paints.count, 1);
}

}  // namespace
}  // namespace rv52::test
