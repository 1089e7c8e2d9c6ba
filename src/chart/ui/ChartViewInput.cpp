// The mouse and the keyboard on the chart.
#include "app/state/Session.h"
#include "chart/Viewpoint.h"
#include "chart/commands/ChartEditing.h"
#include "chart/ui/ChartView.h"
#include "table/Numbers.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>

namespace rv52 {

namespace {

constexpr double kDegreesPerKey = 5;
constexpr double kNotch = 120;  // of a wheel, in eighths of a degree

// A drag works in whole pixels, however finely a pointer reports.
Point WholePixel(const QPointF& position) {
    return {RoundHalfEven(position.x()), RoundHalfEven(position.y())};
}

PressKey KeyOf(Qt::KeyboardModifiers modifiers) {
    if (modifiers == Qt::NoModifier) return PressKey::Plain;
    return modifiers == Qt::ShiftModifier ? PressKey::Shift : PressKey::Other;
}

std::optional<Cell> CellNear(const std::optional<Scene>& scene, Point mouse) {
    if (!scene) return std::nullopt;
    const auto nearest = NearestVisible(scene->mesh, scene->areas.plotting, mouse, kPickRadius);
    return nearest ? std::optional(nearest->cell) : std::nullopt;
}

// From where the plot is seen after a key: the arrows turn it, + and - zoom, Home goes back to where the
// template looks from. Nothing for a key without a meaning here.
std::optional<Viewpoint> ViewpointAfterKey(int key, const Viewpoint& from, const ChartTemplate& chartTemplate,
                                           const Area& plot) {
    switch (key) {
        case Qt::Key_Left:
            return Turned(from, -kDegreesPerKey, 0);
        case Qt::Key_Right:
            return Turned(from, kDegreesPerKey, 0);
        case Qt::Key_Up:
            return Turned(from, 0, kDegreesPerKey);
        case Qt::Key_Down:
            return Turned(from, 0, -kDegreesPerKey);
        case Qt::Key_Plus:
        case Qt::Key_Equal:  // the same key without Shift on many keyboards
            return ViewpointAfterWheel(1, CentreOf(plot), from, plot);
        case Qt::Key_Minus:
            return ViewpointAfterWheel(-1, CentreOf(plot), from, plot);
        case Qt::Key_Home:
            return ViewpointOf(chartTemplate);
        default:
            return std::nullopt;
    }
}

}  // namespace

bool ChartView::CanMovePlot() {
    return session_.chart.Interactive() && !grab_ && Shown();
}

void ChartView::StartPlotDrag(PlotDrag::Kind kind, Point mouse, Qt::MouseButton button) {
    if (!CanMovePlot()) return;
    plotDrag_.emplace(kind, mouse);
    plotButton_ = button;
    hover_.reset();
    update();
    setCursor(kind == PlotDrag::Kind::Shift ? Qt::ClosedHandCursor : Qt::SizeAllCursor);
}

void ChartView::EndPlotDrag() {
    if (!plotDrag_) return;
    plotDrag_.reset();
    unsetCursor();
}

void ChartView::PressLeft(Point mouse, Qt::KeyboardModifiers modifiers) {
    if (plotDrag_) return;
    const auto key = KeyOf(modifiers);
    if (modifiers == Qt::ControlModifier) StartPlotDrag(PlotDrag::Kind::Turn, mouse, Qt::LeftButton);
    ChartPress(session_, key, key == PressKey::Other ? std::nullopt : CellNear(Shown(), mouse));
    grab_.reset();
    if (session_.gesture.kind == ChartGesture::Kind::None) return;
    const auto cell = session_.gesture.PickedCell();
    // A point beyond the axis is drawn near its end: that is what is taken, so that it leaves its limit as
    // soon as the mouse does. A shift is the way from the value itself.
    const bool point = session_.gesture.kind == ChartGesture::Kind::Point;
    const double value = point ? Shown()->mesh.At(cell).height : session_.table.Table().GetCell(cell);
    grab_ = Grab{cell, value, mouse};
    hover_.reset();
    update();
}

void ChartView::Move(Point mouse, Qt::MouseButtons buttons) {
    if (!Shown()) return;
    if (!buttons.testFlag(Qt::LeftButton)) DropGrab();
    if (!buttons.testFlag(plotButton_)) EndPlotDrag();
    if (plotDrag_) Look(plotDrag_->MovedTo(mouse, viewpoint_, scene_->areas.plot));
    if (grab_)
        ChartDrag(session_, ValueAtMouse(*grab_, mouse, scene_->projection, scene_->chartTemplate.advance));
}

void ChartView::Hover(std::optional<Point> mouse) {
    if (plotDrag_ || grab_) return;
    const auto cell = mouse && !session_.gate.Busy() ? CellNear(Shown(), *mouse) : std::nullopt;
    if (cell)
        setCursor(Qt::SizeVerCursor);
    else
        unsetCursor();
    if (cell == hover_) return;
    hover_ = cell;
    update();
}

// A menu, a message box or a hidden chart can take the button's release away.
void ChartView::DropDrags() {
    EndPlotDrag();
    DropGrab();
}

void ChartView::DropGrab() {
    if (!grab_) return;
    grab_.reset();
    ChartDragLost(session_);
    update();
}

void ChartView::leaveEvent(QEvent*) {
    dispatch_([this] { Hover(std::nullopt); });
}

void ChartView::mousePressEvent(QMouseEvent* event) {
    const auto mouse = WholePixel(event->position());
    dispatch_([&] {
        // The focus goes over only once an open edit has ended: taking it first would have a refused text
        // judged twice.
        if (!session_.view.CommitEditor()) return;
        setFocus(Qt::MouseFocusReason);
        if (event->buttons() == event->button()) DropDrags();
        if (event->button() == Qt::LeftButton) PressLeft(mouse, event->modifiers() & ~Qt::KeypadModifier);
        if (event->button() == Qt::RightButton) StartPlotDrag(PlotDrag::Kind::Turn, mouse, Qt::RightButton);
        if (event->button() == Qt::MiddleButton)
            StartPlotDrag(PlotDrag::Kind::Shift, mouse, Qt::MiddleButton);
    });
}

void ChartView::mouseMoveEvent(QMouseEvent* event) {
    const auto mouse = WholePixel(event->position());
    dispatch_([&] {
        if (event->buttons() != Qt::NoButton) return Move(mouse, event->buttons());
        DropDrags();
        Hover(mouse);
    });
}

void ChartView::mouseReleaseEvent(QMouseEvent* event) {
    dispatch_([&] {
        if (event->button() == Qt::LeftButton || session_.gesture.ReleaseSuppressed) {
            grab_.reset();
            ChartRelease(session_);
            update();
        }
        if (event->button() == plotButton_) EndPlotDrag();
        if (event->buttons() != Qt::NoButton) return;
        EndPlotDrag();
        Hover(WholePixel(event->position()));
    });
}

void ChartView::mouseDoubleClickEvent(QMouseEvent* event) {
    // With Ctrl the left button turns the plot, however soon it is pressed again.
    const bool turns = (event->modifiers() & ~Qt::KeypadModifier) == Qt::ControlModifier;
    if (event->button() != Qt::LeftButton || turns) return mousePressEvent(event);
    dispatch_([&] {
        DropGrab();
        ChartDoubleClick(session_);
    });
}

void ChartView::wheelEvent(QWheelEvent* event) {
    dispatch_([&] {
        if (!CanMovePlot()) return event->ignore();
        const Point pointer{event->position().x(), event->position().y()};
        Look(ViewpointAfterWheel(event->angleDelta().y() / kNotch, pointer, viewpoint_, scene_->areas.plot));
        Hover(pointer);
    });
}

void ChartView::keyPressEvent(QKeyEvent* event) {
    dispatch_([&] {
        std::optional<Viewpoint> next;
        if (CanMovePlot())
            next = ViewpointAfterKey(event->key(), viewpoint_, scene_->chartTemplate, scene_->areas.plot);
        if (!next) return event->ignore();
        Look(*next);
        Hover(std::nullopt);
    });
}

}  // namespace rv52
