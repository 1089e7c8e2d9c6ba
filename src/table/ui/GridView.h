#pragma once

#include "app/state/GridSheet.h"

#include <QTableView>

#include <functional>

namespace rv52 {

struct Session;
class GridCorner;
class GridMenu;
class GridModel;
class CellEditor;

// The table's grid: a view on the session's sheet. Cursor and selection follow the sheet and the sheet
// follows them; an edit ends in the core, which may refuse it.
class GridView : public QTableView {
    Q_OBJECT

 public:
    // How an event, and how a command of the popup menu, gets into the core.
    using Dispatch = std::function<void(std::function<void()>)>;
    using RunCommand = std::function<void(std::function<void(Session&)>)>;

    GridView(Session& session, Dispatch dispatch, RunCommand runCommand, QWidget* parent = nullptr);

    // Whether a cell editor is open.
    bool Edits() const;
    // Ends an open cell editor as Enter would; false when its text is refused and the editor stays open.
    bool CommitEditor();
    // Closes an open cell editor, leaving the cell's old text.
    void AbandonEditor();
    void SettleEditor();

    // Typing starts an edit, never a search.
    void keyboardSearch(const QString&) override {}

 protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void updateGeometries() override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;

 private:
    void SetUpParts();
    void SheetChanged(GridSheet::Change change);
    void ReflectLayout();
    // Row heights and column widths for the grid's present inner size.
    void ApplyPitch();
    void ReflectCursor();
    void TellSheet();
    void MarkFocus();
    void ShowMenu(const QPoint& screen);
    void ShowMenuAtCursor();
    void MoveCursorBy(int rows, int columns);

    Session& session_;
    Dispatch dispatch_;
    GridModel* model_;
    GridCorner* corner_;
    GridMenu* menu_;
    CellEditor* editing_;
    bool syncing_ = false;  // cursor and selection are on their way between view and sheet
    Listening listening_;
    bool dragging_ = false;  // the left button was pressed on a data cell
};

}  // namespace rv52
