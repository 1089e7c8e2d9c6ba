#pragma once

#include "app/state/GridSheet.h"

namespace rv52 {

struct Session;

// Moves the grid's cursor, selecting just its cell. On a data cell the chart's value label is then on its
// point; on a header it keeps its last place and text. The cursor leaves a cell under edit only when the edit
// can be ended: false when the text is refused, and the cursor stays.
bool MoveGridCursor(Session& session, GridCell to);
// The same with a selection of several cells, the cursor being one of them. The label follows a cursor that
// moves, and stays as it is with one that stays.
bool SelectGridCells(Session& session, const GridRange& range, GridCell cursor);

}  // namespace rv52
