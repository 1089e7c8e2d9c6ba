#pragma once

#include "UserActions.h"
#include "table/ui/GridView.h"

#include <QLineEdit>

namespace rv52::test {

constexpr GridCell At(int row, int column) {
    return {GridRow(row), GridColumn(column)};
}
constexpr GridCell kCell = At(2, 3);

// The grid at its first size in a window of its own, beside another place for the focus.
class GridTest : public WidgetTest {
 protected:
    GridTest() {
        test.view.commit = [this] { return grid.CommitEditor(); };
        grid.setGeometry(0, 0, 592, 102);
        elsewhere.setGeometry(0, 200, 100, 30);
        window.resize(640, 260);
        Activate(window);
    }

    void Show(TableType type) { ShowAs(session, FlatTable(type, type == TableType::RACE ? 30 : 10)); }

    QRect PlaceOf(GridCell at) const {
        return grid.visualRect(grid.model()->index(at.row - 1, at.column - 1));
    }
    void ClickCell(GridCell at, Qt::KeyboardModifiers keys = {}, Qt::MouseButton button = Qt::LeftButton) {
        Click(*grid.viewport(), PlaceOf(at).center(), button, keys);
    }
    void DoubleClickCell(GridCell at) {
        QTest::mouseDClick(grid.viewport(), Qt::LeftButton, {}, PlaceOf(at).center());
    }
    QLineEdit* Editor() const {
        for (auto* editor : grid.findChildren<QLineEdit*>())
            if (editor->isVisible()) return editor;
        return nullptr;
    }
    void ExpectRefusal() {
        test.prompts.ExpectNotice("Advance must be numeric value between zero and 45 degrees.",
                                  "Advance Edit", Icon::Critical);
    }
    std::string Text(GridCell at) const { return session.sheet.Text(at); }
    GridCell Cursor() const { return session.sheet.Cursor(); }
    GridRange Selection() const { return session.sheet.Selection(); }

    QWidget window;
    GridView grid{session, [](const auto& event) { event(); },
                  [this](const auto& command) {
                      if (grid.CommitEditor()) command(session);
                  },
                  &window};
    QLineEdit elsewhere{&window};
};

}  // namespace rv52::test
