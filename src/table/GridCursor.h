#pragma once

#include "table/GridSheet.h"

namespace rv52 {

struct Session;

// Moves the grid's cursor, selecting just its cell. On a data cell the chart's value label follows; on a
// header it keeps its last place and text.
void MoveGridCursor(Session& session, GridCell to);
// The same with a selection of several cells, the cursor being one of them.
void SelectGridCells(Session& session, const GridRange& range, GridCell cursor);

}  // namespace rv52
