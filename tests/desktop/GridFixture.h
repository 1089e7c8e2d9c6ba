#pragma once

#include "app/Layout.h"
#include "support/IdleLine.h"
#include "support/ShownTable.h"
#include "support/TestSession.h"
#include "table/GridView.h"

#include <QLineEdit>
#include <QTest>

#include <gtest/gtest.h>

namespace rv52::test {

// The grid at its first size in a window of its own, beside another place for the focus.
class GridFixture : public testing::Test {
 protected:
    GridFixture() {
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

    void ExpectRefusal() {
        test.prompts.Expect({"Advance must be numeric value between zero and 45 degrees.", "Advance Edit",
                             Icon::Critical, Buttons::Ok},
                            Answer::Ok);
    }

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

}  // namespace rv52::test
