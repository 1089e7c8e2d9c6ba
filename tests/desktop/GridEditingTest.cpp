#include "GridFixture.h"

#include <QClipboard>
#include <QMessageBox>
#include <QTimer>

namespace rv52::test {

TEST_F(GridTest, AcceptsATypedAdvanceHoweverTheEditEnds) {
    Show(TableType::RACE);
    for (const auto& [text, key, cursor] : {std::tuple("12.34", Qt::Key_Return, kCell),
                                            {"7", Qt::Key_Tab, At(2, 4)},
                                            {"8", Qt::Key_Down, At(3, 3)},
                                            {"10", Qt::Key_PageUp, At(1, 3)},
                                            {"11", Qt::Key_PageDown, At(8, 3)},
                                            {"9", Qt::Key_unknown, At(1, 1)}}) {
        SCOPED_TRACE(text);
        ClickCell(kCell);
        Type(text);
        ASSERT_NE(Editor(), nullptr);
        EXPECT_GE(Editor()->height(), Editor()->fontMetrics().height());
        key == Qt::Key_unknown ? ClickCell(cursor) : Key(key);
        EXPECT_EQ(Editor(), nullptr);
        EXPECT_EQ(Text(kCell), text);
        EXPECT_EQ(Cursor(), cursor);
        EXPECT_TRUE(grid.hasFocus());
    }
    ClickCell(kCell);
    Key(Qt::Key_F2);
    EXPECT_EQ(Editor()->selectedText(), QStringLiteral("9"));
    elsewhere.setFocus();
    ClickCell(At(5, 5));
    DoubleClickCell(At(5, 5));
    EXPECT_EQ(Editor()->selectedText(), QStringLiteral("30.0"));
}

// Keys that go somewhere in the grid go nowhere while a cell is open in it, nor does anybody else.
TEST_F(GridTest, TheCursorStaysWithItsOpenEditor) {
    Show(TableType::RACE);
    ClickCell(kCell);
    Type("44");
    constexpr auto ctrl = Qt::ControlModifier;
    // The last is the place in the typed text.
    const std::tuple<Qt::Key, Qt::KeyboardModifiers, int> stays[] = {
        {Qt::Key_Home, ctrl, 0},  {Qt::Key_End, ctrl, 2},  {Qt::Key_Left, ctrl, 0},
        {Qt::Key_Right, ctrl, 2}, {Qt::Key_A, ctrl, 2},    {Qt::Key_F2, {}, 2},
        {Qt::Key_Home, ctrl, 0},  {Qt::Key_Insert, {}, 0}, {Qt::Key_End, ctrl | Qt::ShiftModifier, 2}};
    for (const auto& [key, keys, place] : stays) {
        SCOPED_TRACE(key);
        Key(key, keys);
        ASSERT_TRUE(Editor() != nullptr && Editor()->hasFocus());
        EXPECT_EQ(Editor()->cursorPosition(), place);
        EXPECT_EQ(grid.currentIndex(), grid.model()->index(1, 2));
        EXPECT_EQ(session.chart.Label(), (ValueLabel{true, {Column(3), Row(7)}, "30.0"}));
    }
    EXPECT_EQ(Editor()->selectedText(), QStringLiteral("44"));
    Type("46");
    ExpectRefusal();
    grid.setCurrentIndex(grid.model()->index(5, 5));
    EXPECT_EQ(Selection(), (GridRange{kCell, kCell}));
    EXPECT_EQ(grid.currentIndex(), grid.model()->index(1, 2));
    ASSERT_NE(Editor(), nullptr);
    Type("12");
    grid.setCurrentIndex(grid.model()->index(5, 5));
    EXPECT_EQ(Text(kCell), "12");
    EXPECT_EQ(Cursor(), At(6, 6));
    EXPECT_EQ(Editor(), nullptr);
}

TEST_F(GridTest, ACellFromAnotherProgramsClipboardIsItsNumber) {
    Show(TableType::RACE);
    for (const auto* copied : {"31\n", "32\r\n", "33\t", "34"}) {
        ClickCell(kCell);
        Key(Qt::Key_F2);
        QApplication::clipboard()->setText(QString::fromLatin1(copied));
        Key(Qt::Key_V, Qt::ControlModifier);
        Key(Qt::Key_Return);
        EXPECT_EQ(Text(kCell), std::string(copied, 2));
    }
}

// Each way of ending an edit asks once, and the editor stays with its text selected.
TEST_F(GridTest, RefusesOnceAndKeepsTheEditorOpen) {
    Show(TableType::RACE);
    // The box as the desktop shows it: a window of its own that takes the focus.
    test.prompts.whileOpen = [&] {
        QMessageBox box(QMessageBox::Critical, {}, {}, QMessageBox::Ok, &window);
        QTimer::singleShot(0, &box, [&] { QTest::keyClick(&box, Qt::Key_Return); });
        box.exec();
    };
    const std::pair<const char*, Act> ends[] = {
        {"Enter", [] { Key(Qt::Key_Return); }},
        {"Tab", [] { Key(Qt::Key_Tab); }},
        {"Up", [] { Key(Qt::Key_Up); }},
        {"another cell", [this] { ClickCell(At(6, 6)); }},
        {"its menu", [this] { ClickCell(At(6, 6), Qt::NoModifier, Qt::RightButton); }},
        {"elsewhere", [this] { Click(elsewhere); }},
        {"a command", [this] { EXPECT_FALSE(grid.CommitEditor()); }}};
    ClickCell(kCell);
    Type("45.01");
    for (const auto& [way, end] : ends) {
        SCOPED_TRACE(way);
        ExpectRefusal();
        end();
        Activate(window);  // as a window manager does once the box is gone
        EXPECT_TRUE(test.prompts.Done());
        ASSERT_TRUE(Editor() != nullptr && Editor()->hasFocus());
        EXPECT_EQ(Editor()->selectedText(), QStringLiteral("45.01"));
        EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
        EXPECT_EQ(Cursor(), kCell);
    }
    // Looking something up in another window is no end of an edit.
    QWidget another;
    Activate(another);
    Activate(window);
    EXPECT_EQ(Text(kCell), "30.0");
    Type("44");
    Key(Qt::Key_Return);
    // Nothing is refused when the program lets go of an edit.
    const std::pair<const char*, Act> abandons[] = {{"Escape", [] { Key(Qt::Key_Escape); }},
                                                    {"the program", [&] { grid.AbandonEditor(); }},
                                                    {"another table", [&] { Show(TableType::EX); }}};
    for (const auto& [way, abandon] : abandons) {
        SCOPED_TRACE(way);
        EXPECT_EQ(Text(kCell), "44");
        Type("abc");
        ASSERT_NE(Editor(), nullptr);
        abandon();
        EXPECT_TRUE(grid.hasFocus() && Editor() == nullptr);
    }
}

TEST_F(GridTest, OpensNoEditorOnAnExTableOrWhileACommandRuns) {
    for (const auto type : {TableType::EX, TableType::RACE}) {
        Show(type);
        ClickCell(kCell);
        std::optional<CommandGate::Closed> stay;
        if (type == TableType::RACE) stay.emplace(session.gate);
        Type("5");
        Key(Qt::Key_F2);
        DoubleClickCell(kCell);
        EXPECT_EQ(Editor(), nullptr) << ToText(type);
    }
}

}  // namespace rv52::test
