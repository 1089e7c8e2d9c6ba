#pragma once

#include "app/state/GridSheet.h"
#include "table/TableType.h"

#include <string>

namespace rv52 {

struct Session;

// What every command that loads a table does to the chart and the grid.

// Lays the grid out: headers, empty cells, the cursor on the corner.
void SetUpTableGrid(Session& session, TableType type);

// RACE: the grid's cells can be edited in place; EX: not at all.
void SetGridEditability(Session& session, TableType type);

// As SetGridEditability, with the chart's own interactions switched alike.
void SetEditingPermission(Session& session, TableType type);

// Fills every data cell of the grid from the current table.
void CopyChartToGrid(Session& session);

// The grid's share of putting a table on screen: fills it, hides the value label, runs the layout pass,
// shows chart and grid and puts the cursor where the command wants it. how says what the table was: "opened".
void FillAndShowTable(Session& session, const std::string& how, GridCell cursor);

// Chart and grid together; TableShown follows.
void ShowTable(Session& session);
void HideTable(Session& session);

}  // namespace rv52
