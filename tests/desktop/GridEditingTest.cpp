#include "GridFixture.h"
#include "table/commands/GridCursor.h"

#include <QClipboard>
#include <QMessageBox>
#include <QTimer>

namespace rv52::test {

TEST_F(GridTest, AcceptsATypedAdvanceHoweverTheEditEnds) {
    Show(TableType::RACE);
    for (const auto& [text, key, cursor] :
         {std::tuple("12.34", Qt::Key_Return, GridCell{GridRow(2), GridColumn(3)}),
          {"7", Qt::Key_Tab, {GridRow(2), GridColumn(4)}},
          {"8", Qt::Key_Down, {GridRow(3), GridColumn(3)}},
          {"10", Qt::Key_PageUp, {GridRow(1), GridColumn(3)}},
          {"11", Qt::Key_PageDown, {GridRow(8), GridColumn(3)}},
          {"9", Qt::Key_unknown, {GridRow(1), GridColumn(1)}}}) {
        ClickCell({GridRow(2), GridColumn(3)});
        Type(text);
        ASSERT_NE(Editor(), nullptr);
        EXPECT_GE(Editor()->height(), Editor()->fontMetrics().height());
        key == Qt::Key_unknown ? ClickCell({GridRow(1), GridColumn(1)}) : Key(key);
        EXPECT_EQ(Editor(), nullptr);
        EXPECT_EQ(Text({GridRow(2), GridColumn(3)}), text);
        EXPECT_EQ(Degrees({GridRow(2), GridColumn(3)}), std::stod(text));
        EXPECT_EQ(Cursor(), cursor) << text;
        EXPECT_TRUE(grid.hasFocus());
    }
    ClickCell({GridRow(2), GridColumn(3)});
    Key(Qt::Key_F2);
    EXPECT_EQ(Editor()->selectedText(), QStringLiteral("9"));
    elsewhere.setFocus();
    ClickCell({GridRow(5), GridColumn(5)});
    QTest::mouseDClick(grid.viewport(), Qt::LeftButton, {}, PlaceOf({GridRow(5), GridColumn(5)}).center());
    EXPECT_EQ(Editor()->selectedText(), QStringLiteral("30.0"));
}

// Keys that go somewhere in the grid go nowhere while a cell is open in it, nor does anybody else.
TEST_F(GridTest, TheCursorStaysWithItsOpenEditor) {
    Show(TableType::RACE);
    ClickCell({GridRow(2), GridColumn(3)});
    Type("44");
    const struct {
        Qt::Key key;
        Qt::KeyboardModifiers keys;
        int place;  // in the typed text
    } stays[] = {{Qt::Key_Home, Qt::ControlModifier, 0},
                 {Qt::Key_End, Qt::ControlModifier, 2},
                 {Qt::Key_Left, Qt::ControlModifier, 0},
                 {Qt::Key_Right, Qt::ControlModifier, 2},
                 {Qt::Key_A, Qt::ControlModifier, 2},
                 {Qt::Key_F2, {}, 2},
                 {Qt::Key_Home, Qt::ControlModifier, 0},
                 {Qt::Key_Insert, {}, 0},
                 {Qt::Key_End, Qt::ControlModifier | Qt::ShiftModifier, 2}};
    for (const auto& [key, keys, place] : stays) {
        Key(key, keys);
        ASSERT_TRUE(Editor() != nullptr && Editor()->hasFocus()) << key;
        EXPECT_EQ(Editor()->cursorPosition(), place) << key;
        EXPECT_EQ(grid.currentIndex(), grid.model()->index(1, 2)) << key;
        EXPECT_EQ(session.chart.Label(), (ValueLabel{true, {Column(3), Row(7)}, "30.0"})) << key;
    }
    EXPECT_EQ(Editor()->selectedText(), QStringLiteral("44"));
    Type("46");
    for (const Act& move : {Act([this] { grid.setCurrentIndex(grid.model()->index(5, 5)); }), Act([this] {
                                MoveGridCursor(session, {GridRow(6), GridColumn(6)});
                            }),
                            Act([] { Key(Qt::Key_PageDown, Qt::ControlModifier); })}) {
        test.prompts.ExpectNotice("Advance must be numeric value between zero and 45 degrees.",
                                  "Advance Edit", Icon::Critical);
        move();
        EXPECT_EQ(Cursor(), (GridCell{GridRow(2), GridColumn(3)}));
        EXPECT_EQ(Selection(), (GridRange{{GridRow(2), GridColumn(3)}, {GridRow(2), GridColumn(3)}}));
        EXPECT_EQ(grid.currentIndex(), grid.model()->index(1, 2));
        ASSERT_TRUE(Editor() != nullptr);
    }
    Type("12");
    grid.setCurrentIndex(grid.model()->index(5, 5));
    EXPECT_EQ(Text({GridRow(2), GridColumn(3)}), "12");
    EXPECT_EQ(Cursor(), (GridCell{GridRow(6), GridColumn(6)}));
    EXPECT_EQ(Editor(), nullptr);
}

TEST_F(GridTest, ACellFromAnotherProgramsClipboardIsItsNumber) {
    Show(TableType::RACE);
    for (const auto* copied : {"31\n", "32\r\n", "33\t", "34"}) {
        ClickCell({GridRow(2), GridColumn(3)});
        Key(Qt::Key_F2);
        QApplication::clipboard()->setText(QString::fromLatin1(copied));
        Key(Qt::Key_V, Qt::ControlModifier);
        Key(Qt::Key_Return);
        EXPECT_EQ(Text({GridRow(2), GridColumn(3)}), std::string(copied, 2));
        EXPECT_EQ(Degrees({GridRow(2), GridColumn(3)}), std::atoi(copied));
    }
}

// Each way of ending an edit asks once, and the editor stays with its text selected.
TEST_F(GridTest, RefusesOnceAndKeepsTheEditorOpen) {
    Show(TableType::RACE);
    int refusals = 0;
    // The box as the desktop shows it: a window of its own that takes the focus.
    test.prompts.whileOpen = [&] {
        ++refusals;
        QMessageBox box(QMessageBox::Critical, {}, {}, QMessageBox::Ok, &window);
        QTimer::singleShot(0, &box, [&] { QTest::keyClick(&box, Qt::Key_Return); });
        box.exec();
    };
    const Act ends[] = {[] { Key(Qt::Key_Return); },
                        [] { Key(Qt::Key_Tab); },
                        [] { Key(Qt::Key_Up); },
                        [this] {
                            ClickCell({GridRow(6), GridColumn(6)});
                        },
                        [this] {
                            ClickCell({GridRow(6), GridColumn(6)}, {}, Qt::RightButton);
                        },
                        [this] { Click(elsewhere); },
                        [this] { EXPECT_FALSE(grid.CommitEditor()); }};
    ClickCell({GridRow(2), GridColumn(3)});
    Type("45.01");
    int way = 0;
    for (const auto& end : ends) {
        test.prompts.ExpectNotice("Advance must be numeric value between zero and 45 degrees.",
                                  "Advance Edit", Icon::Critical);
        end();
        Activate(window);  // as a window manager does once the box is gone
        EXPECT_EQ(refusals, ++way);
        ASSERT_TRUE(Editor() != nullptr && Editor()->hasFocus()) << way;
        EXPECT_EQ(Editor()->selectedText(), QStringLiteral("45.01")) << way;
        EXPECT_EQ(QApplication::activePopupWidget(), nullptr) << way;
        EXPECT_EQ(Cursor(), (GridCell{GridRow(2), GridColumn(3)})) << way;
    }
    // Looking something up in another window is no end of an edit.
    QWidget another;
    Activate(another);
    Activate(window);
    EXPECT_EQ(Text({GridRow(2), GridColumn(3)}), "30.0");
    Type("44");
    Key(Qt::Key_Return);
    EXPECT_EQ(Text({GridRow(2), GridColumn(3)}), "44");
    // Nothing is refused when the program lets go of an edit.
    for (const Act& abandon : {Act([] { Key(Qt::Key_Escape); }), Act([&] { grid.AbandonEditor(); }),
                               Act([&] { Show(TableType::EX); })}) {
        Type("abc");
        ASSERT_NE(Editor(), nullptr);
        EXPECT_EQ(Text({GridRow(2), GridColumn(3)}), "44");
        abandon();
        EXPECT_TRUE(grid.hasFocus() && Editor() == nullptr);
    }
}

TEST_F(GridTest, OpensNoEditorOnAnExTableOrWhileACommandRuns) {
    for (const auto type : {TableType::EX, TableType::RACE}) {
        Show(type);
        ClickCell({GridRow(2), GridColumn(3)});
        std::optional<CommandGate::Closed> stay;
        if (type == TableType::RACE) stay.emplace(session.gate);
        Type("5");
        Key(Qt::Key_F2);
        QTest::mouseDClick(grid.viewport(), Qt::LeftButton, {},
                           PlaceOf({GridRow(2), GridColumn(3)}).center());
        EXPECT_EQ(Editor(), nullptr);
    }
}

}  // namespace rv52::test
