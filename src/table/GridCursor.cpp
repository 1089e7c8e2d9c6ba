#include "table/GridCursor.h"

#include "app/Session.h"
#include "table/Numbers.h"

namespace rv52 {

void MoveGridCursor(Session& session, GridCell to) {
    SelectGridCells(session, {to, to}, to);
}

void SelectGridCells(Session& session, const GridRange& range, GridCell cursor) {
    const bool moved = cursor != session.sheet.Cursor();
    session.sheet.Select(range, cursor);
    if (!moved || !cursor.IsData() || !session.table.HasTable()) return;
    const auto& table = session.table.Table();
    const auto cell = CellAt(cursor, table.Type());
    session.chart.ShowLabel(cell, FormatTenths(table.GetCell(cell)));
}

}  // namespace rv52
