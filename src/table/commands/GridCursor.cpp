#include "table/commands/GridCursor.h"

#include "app/state/Session.h"
#include "table/Numbers.h"

namespace rv52 {

namespace {

void LabelCursor(Session& session) {
    const auto cursor = session.sheet.Cursor();
    if (!cursor.IsData() || !session.table.HasTable()) return;
    const auto& table = session.table.Table();
    const auto cell = CellAt(cursor, table.Type());
    session.chart.ShowLabel(cell, FormatTenths(table.GetCell(cell)));
}

}  // namespace

bool MoveGridCursor(Session& session, GridCell to) {
    const bool gone = SelectGridCells(session, {to, to}, to);
    // Also where it stood there before: a load hides the label, whatever the cursor then does.
    if (gone) LabelCursor(session);
    return gone;
}

bool SelectGridCells(Session& session, const GridRange& range, GridCell cursor) {
    const bool moves = cursor != session.sheet.Cursor();
    if (moves && !session.view.CommitEditor()) return false;
    session.sheet.Select(range, cursor);
    if (moves) LabelCursor(session);
    return true;
}

}  // namespace rv52
