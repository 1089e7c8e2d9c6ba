#pragma once

#include "UserActions.h"
#include "table/ui/GridView.h"

#include <QLineEdit>

namespace rv52::test {

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

    QWidget window;
    GridView grid{session, [](const auto& event) { event(); },
                  [this](const auto& command) {
                      ++commands;
                      if (commandsRun && grid.CommitEditor()) command(session);
                  },
                  &window};
    QLineEdit elsewhere{&window};
    bool commandsRun = true;
    int commands = 0;
};

}  // namespace rv52::test
