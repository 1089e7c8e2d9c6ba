#pragma once

#include "app/state/DrawFailures.h"
#include "app/state/Listeners.h"
#include "table/AdvanceTable.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace rv52 {

using GridRow = Ordinal<struct GridRows>;
using GridColumn = Ordinal<struct GridColumns>;

// A position on the grid: row g and column k, 0 for the header row and column, which no edit reaches.
struct GridCell {
    GridRow row;
    GridColumn column;

    bool operator==(const GridCell&) const = default;
    bool IsData() const { return row > 0 && column > 0; }
};

// A rectangle of cells, both corners included.
struct GridRange {
    GridCell first;  // top left
    GridCell last;   // bottom right

    bool operator==(const GridRange&) const = default;
};

// The grid shows the table upside down: grid row g is table row R + 1 − g. The only place that says so.
constexpr Cell CellAt(GridCell at, TableType type) {
    return {Column(at.column), Row(RowCount(type) + 1 - at.row)};
}
constexpr GridCell GridCellOf(Cell cell, TableType type) {
    return {GridRow(RowCount(type) + 1 - cell.row), GridColumn(cell.column)};
}

// The grid's own state: its texts, cursor and selection. Texts are not a picture of the table: what was
// typed stands as typed until the next fill, and Modify, Copy and the report read texts. The widget is a
// view on this.
class GridSheet {
 public:
    enum class Change { Layout, Texts, Cursor, Editability };

    explicit GridSheet(DrawFailures& drawing) : drawing_(drawing) {}

    // Headers and empty cells for a table type; the cursor goes to the corner.
    void SetUp(TableType type);

    TableType Type() const { return type_; }
    // 0 before the first SetUp.
    int RowCountWithHeader() const { return rows_; }
    int ColumnCountWithHeader() const { return rows_ == 0 ? 0 : kColumnCount + 1; }

    const std::string& Text(GridCell at) const { return texts_[IndexOf(at)]; }
    void SetText(GridCell at, const std::string& text);

    GridCell Cursor() const { return cursor_; }
    const GridRange& Selection() const { return selection_; }
    // The data cells of the selection; nothing when it lies on headers only.
    std::optional<GridRange> SelectedData() const;
    void Select(const GridRange& range, GridCell cursor);

    bool Editable() const { return editable_; }
    void SetEditable(bool editable);

    // One notification for all the texts changed between Hold and Release.
    void Hold() { ++held_; }
    void Release();
    // A listener's failure is told when the change is over.
    [[nodiscard]] Listening OnChange(std::function<void(Change)> listener) {
        return listeners_.Add(std::move(listener));
    }

 private:
    std::size_t IndexOf(GridCell at) const;
    void Notify(Change change);

    DrawFailures& drawing_;
    TableType type_ = TableType::RACE;
    int rows_ = 0;
    std::vector<std::string> texts_;
    GridCell cursor_;
    GridRange selection_;
    bool editable_ = false;
    int held_ = 0;
    bool textsChanged_ = false;
    Listeners<Change> listeners_;
};

class SheetHold {
 public:
    explicit SheetHold(GridSheet& sheet) : sheet_(sheet) { sheet_.Hold(); }
    ~SheetHold() { sheet_.Release(); }
    SheetHold(const SheetHold&) = delete;
    SheetHold& operator=(const SheetHold&) = delete;

 private:
    GridSheet& sheet_;
};

}  // namespace rv52
