#pragma once

#include "table/AdvanceTable.h"

namespace rv52 {

// What the left mouse button is doing on the chart.
struct ChartGesture {
    // Decided at the press, it holds until the release, whichever key is let go first.
    enum class Kind { None, Point, Surface };

    Kind kind = Kind::None;
    int PickedColumn = 0;  // the data point chosen by the last press; 0 when it hit none
    int PickedRow = 0;
    double PendingOffset = 0;        // degrees, of a whole-surface shift being dragged
    bool ReleaseSuppressed = false;  // a double click is going on; the next release only ends it

    bool Picked() const { return PickedColumn > 0 && PickedRow > 0; }
    Cell PickedCell() const { return {PickedColumn, PickedRow}; }
};

}  // namespace rv52
