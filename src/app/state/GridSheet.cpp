#include "app/state/GridSheet.h"

#include <algorithm>
#include <stdexcept>

namespace rv52 {

void GridSheet::SetUp(TableType type) {
    type_ = type;
    rows_ = rv52::RowCount(type) + 1;
    texts_.assign(static_cast<std::size_t>(rows_) * static_cast<std::size_t>(ColumnCountWithHeader()), {});
    cursor_ = {};
    selection_ = {};
    texts_[IndexOf({GridRow(0), GridColumn(0)})] = "MAP/RPM";
    for (int column = 1; column <= kColumnCount; ++column)
        texts_[IndexOf({GridRow(0), GridColumn(column)})] = std::to_string(RpmOfColumn(column));
    for (int row = 1; row < rows_; ++row)
        texts_[IndexOf({GridRow(row), GridColumn(0)})] =
            std::to_string(MapOfRow(CellAt({GridRow(row), GridColumn(1)}, type).row));
    Notify(Change::Layout);
}

void GridSheet::SetText(GridCell at, const std::string& text) {
    texts_[IndexOf(at)] = text;
    textsChanged_ = true;
    if (held_ == 0) Release();
}

std::optional<GridRange> GridSheet::SelectedData() const {
    const GridCell first{GridRow(std::max<int>(1, selection_.first.row)),
                         GridColumn(std::max<int>(1, selection_.first.column))};
    if (selection_.last.row < first.row || selection_.last.column < first.column) return std::nullopt;
    return GridRange{first, selection_.last};
}

void GridSheet::Select(const GridRange& range, GridCell cursor) {
    if (range == selection_ && cursor == cursor_) return;
    selection_ = range;
    cursor_ = cursor;
    Notify(Change::Cursor);
}

void GridSheet::SetEditable(bool editable) {
    editable_ = editable;
    Notify(Change::Editability);
}

void GridSheet::Release() {
    if (held_ > 0 && --held_ > 0) return;
    if (!textsChanged_) return;
    textsChanged_ = false;
    Notify(Change::Texts);
}

std::size_t GridSheet::IndexOf(GridCell at) const {
    if (at.row < 0 || at.row >= rows_ || at.column < 0 || at.column > kColumnCount)
        throw std::logic_error("no such cell in the grid");
    return static_cast<std::size_t>(at.row) * static_cast<std::size_t>(ColumnCountWithHeader()) +
           static_cast<std::size_t>(at.column);
}

void GridSheet::Notify(Change change) {
    listeners_.ForEach([this](const auto& listener) { drawing_.Guard(listener); }, change);
}

}  // namespace rv52
