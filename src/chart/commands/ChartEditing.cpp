#include "chart/commands/ChartEditing.h"

#include "app/state/Session.h"
#include "table/Numbers.h"
#include "table/commands/GridCursor.h"
#include "table/commands/TableDisplay.h"

#include <algorithm>
#include <utility>

namespace rv52 {

namespace {

constexpr double kStep = 0.2;
constexpr double kLargestShift = 5;

double WithinLimits(const Session& session, Cell cell, double degrees) {
    const auto type = session.table.Table().Type();
    return std::clamp(std::min(degrees, CellLimit(session.state, type, cell)), 0.0, kHighestAdvance);
}

// Two steps of the table's precision for each degree of the mouse's way.
double LimitedShift(TableType type, double degrees) {
    const double most = type == TableType::EX ? 0 : kLargestShift;
    return std::clamp(RoundHalfEven(2 * degrees) * kStep, -kLargestShift, most);
}

void Pick(ChartGesture& gesture, std::optional<Cell> hit) {
    gesture.PickedColumn = hit ? hit->column : 0;
    gesture.PickedRow = hit ? hit->row : 0;
}

void PressPoint(Session& session, Steps& step, std::optional<Cell> hit) {
    Pick(session.gesture, hit);
    if (!hit) return;
    const auto& table = session.table.Table();
    session.gesture.kind = ChartGesture::Kind::Point;
    step([&] { MoveGridCursor(session, GridCellOf(*hit, table.Type())); });
    step([&] { session.chart.ShowLabel(*hit, FormatTenths(table.GetCell(*hit))); });
}

void PressSurface(Session& session, Steps& step, std::optional<Cell> hit) {
    Pick(session.gesture, hit);
    if (hit) {
        session.gesture.kind = ChartGesture::Kind::Surface;
        session.gesture.PendingOffset = 0;
        step([&] { session.chart.ShowLabel(*hit, FormatTenths(0)); });
    }
    step([&] { MoveGridCursor(session, {GridRow(0), GridColumn(0)}); });
}

void DragPoint(Session& session, Steps& step, double valueAtMouse) {
    const auto cell = session.gesture.PickedCell();
    const double value = WithinLimits(session, cell, RoundHalfEven(5 * valueAtMouse) * kStep);
    step([&] {
        const RedrawHold hold(session.table);
        session.table.SetCell(cell, value);
        session.chart.SetLabelText(FormatTenths(value));
    });
}

void DragSurface(Session& session, Steps& step, double valueAtMouse) {
    const auto& table = session.table.Table();
    const double way = valueAtMouse - table.GetCell(session.gesture.PickedCell());
    session.gesture.PendingOffset = LimitedShift(table.Type(), way);
    step([&] { session.chart.SetLabelText(FormatTenths(session.gesture.PendingOffset)); });
}

// The text of the picked point's cell. The press made it the current one, but the keyboard can have moved
// the cursor since.
void WritePointText(Session& session) {
    const auto& table = session.table.Table();
    const auto cell = session.gesture.PickedCell();
    session.sheet.SetText(GridCellOf(cell, table.Type()), FormatTenths(table.GetCell(cell)));
}

void ReleasePoint(Session& session, Steps& step) {
    step([&] { WritePointText(session); });
    step([&] { session.chart.HideLabel(); });
    session.history.End("Drag");
}

void ReleaseSurface(Session& session, Steps& step) {
    step([&] {
        const RedrawHold hold(session.table);
        session.chart.HideLabel();
        // A shift of 0 leaves also those values as they are that lie outside the limits.
        if (session.gesture.PendingOffset != 0) session.table.Replace(ShiftedTable(session));
    });
    step([&] { CopyChartToGrid(session); });
    session.history.End("Shift");
}

// Whether the gesture's point still exists: a command may have replaced the table since the press.
bool PointExists(const Session& session) {
    const auto& gesture = session.gesture;
    return session.table.HasTable() && gesture.Picked() &&
           gesture.PickedRow <= session.table.Table().RowCount();
}

ChartGesture::Kind EndGesture(Session& session) {
    return std::exchange(session.gesture.kind, ChartGesture::Kind::None);
}

}  // namespace

void ChartPress(Session& session, PressKey key, std::optional<Cell> hit) {
    if (session.gate.Busy() || session.gesture.ReleaseSuppressed) return;
    ChartDragLost(session);
    if (key == PressKey::Other || !session.table.HasTable()) return;
    // The cursor may be about to leave a cell that is open in the editor.
    const bool cursorMoves = hit || key == PressKey::Shift;
    if (cursorMoves && !session.view.CommitEditor()) return;
    session.history.Begin();
    const auto drop = [&] {
        EndGesture(session);
        Pick(session.gesture, std::nullopt);
    };
    session.steps.Procedure(drop, [&](Steps& step) {
        if (key == PressKey::Shift)
            PressSurface(session, step, hit);
        else
            PressPoint(session, step, hit);
    });
}

void ChartDrag(Session& session, double valueAtMouse) {
    if (session.gate.Busy() || session.gesture.ReleaseSuppressed || !PointExists(session)) return;
    session.steps.Procedure([&](Steps& step) {
        if (session.gesture.kind == ChartGesture::Kind::Point) DragPoint(session, step, valueAtMouse);
        if (session.gesture.kind == ChartGesture::Kind::Surface) DragSurface(session, step, valueAtMouse);
    });
}

void ChartRelease(Session& session) {
    if (session.gesture.ReleaseSuppressed) {
        session.gesture.ReleaseSuppressed = false;
        return;
    }
    if (session.gate.Busy()) return ChartDragLost(session);
    const auto kind = EndGesture(session);
    if (!PointExists(session)) return;
    session.steps.Procedure([&](Steps& step) {
        if (kind == ChartGesture::Kind::Point) ReleasePoint(session, step);
        if (kind == ChartGesture::Kind::Surface) ReleaseSurface(session, step);
    });
}

void ChartDoubleClick(Session& session) {
    ChartDragLost(session);
    session.gesture.ReleaseSuppressed = true;
}

void ChartDragLost(Session& session) {
    const auto kind = EndGesture(session);
    if (kind == ChartGesture::Kind::None) return;
    session.steps.Procedure([&](Steps& step) {
        if (kind == ChartGesture::Kind::Point && PointExists(session)) return ReleasePoint(session, step);
        step([&] { session.chart.HideLabel(); });
    });
}

AdvanceTable ShiftedTable(const Session& session) {
    auto table = session.table.Table();
    ForEachCell(table.Type(), [&](Cell cell) {
        table.SetCell(cell, WithinLimits(session, cell, table.GetCell(cell) + session.gesture.PendingOffset));
    });
    return table;
}

}  // namespace rv52
