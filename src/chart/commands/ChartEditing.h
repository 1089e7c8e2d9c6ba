#pragma once

#include "table/AdvanceTable.h"

#include <optional>

namespace rv52 {

struct Session;

// Changing the table on the chart: the left button takes a data point and drags it up or down, or with
// Shift the whole surface. The view says which point a press hits and which value the mouse is at. While a
// command runs, no gesture starts or goes on.

enum class PressKey { Plain, Shift, Other };

// The button goes down, on a data point or beside all of them.
void ChartPress(Session& session, PressKey key, std::optional<Cell> hit);
// The mouse moves with the button down: the value that the picked point would take at the mouse.
void ChartDrag(Session& session, double valueAtMouse);
void ChartRelease(Session& session);
void ChartDoubleClick(Session& session);
// The button's release was lost, to a message box for instance: a dragged point stays where it is, a
// pending shift is dropped.
void ChartDragLost(Session& session);

// The surface as the pending shift would leave it.
AdvanceTable ShiftedTable(const Session& session);

}  // namespace rv52
