#include "chart/ChartView.h"

#include "app/Session.h"
#include "chart/ChartEditing.h"
#include "chart/ChartPainter.h"
#include "chart/QtPlane.h"
#include "platform/qt/Text.h"

#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

#include <cmath>

namespace rv52 {

namespace {

constexpr double kDegreesPerPixel = 0.4;
constexpr double kDegreesPerKey = 5;
constexpr double kZoomPerNotch = 1.15;
constexpr double kNotch = 120;  // eighths of a degree of a wheel's turn

// In the accessibility tree only.
class SpokenLabel : public QLabel {
 public:
    using QLabel::QLabel;

 protected:
    void paintEvent(QPaintEvent*) override {}
};

Point At(const QPointF& position) {
    return {position.x(), position.y()};
}

// The chart's mouse editing works in whole pixels.
Point WholePixel(const QPointF& position) {
    return {std::nearbyint(position.x()), std::nearbyint(position.y())};
}

}  // namespace

ChartView::ChartView(Session& session, Dispatch dispatch, QWidget* parent)
    : QWidget(parent), session_(session), dispatch_(std::move(dispatch)), label_(new SpokenLabel(this)) {
    setObjectName(QStringLiteral("Chart3D1"));
    setAccessibleName(tr("Advance surface"));
    setAccessibleDescription(
        tr("The advance table as a surface: engine speed, manifold pressure, and advance as height. "
           "Drag a point up or down to change it; with Shift, the whole surface."));
    // Panels lie over the chart: what they do must not repaint it.
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    label_->setObjectName(QStringLiteral("lblChartValue"));
    label_->setTextFormat(Qt::PlainText);
    label_->setAttribute(Qt::WA_TransparentForMouseEvents);
    label_->hide();

    session_.table.OnRedraw([this] { Renew(); });
    session_.sheet.OnChange([this](GridSheet::Change change) {
        if (change == GridSheet::Change::Cursor || change == GridSheet::Change::Layout) update();
    });
}

const std::optional<Scene>& ChartView::Shown() {
    const auto& chartTemplate = session_.chart.Template();
    if (!scene_ && session_.table.HasTable() && chartTemplate)
        scene_ = SceneOf(session_.table.Table(), *chartTemplate, viewpoint_,
                         {0, 0, static_cast<double>(width()), static_cast<double>(height())},
                         MeasureOn(font(), this));
    return scene_;
}

void ChartView::Renew() {
    scene_.reset();
    FollowTemplate();
    UpdateLabel();
    update();
}

void ChartView::FollowTemplate() {
    if (templateSerial_ == session_.chart.TemplateSerial()) return;
    templateSerial_ = session_.chart.TemplateSerial();
    viewpoint_ = ViewpointOf(*session_.chart.Template());
}

void ChartView::Look(const rv52::Viewpoint& viewpoint) {
    if (viewpoint == viewpoint_) return;
    viewpoint_ = viewpoint;
    Renew();
}

ChartMarks ChartView::LabelMarks() const {
    ChartMarks marks;
    const auto& label = session_.chart.Label();
    if (!label.shown || label.at.row > session_.table.Table().RowCount()) return marks;
    marks.labelled = label.at;
    marks.label = label.text;
    return marks;
}

ChartMarks ChartView::Marks() const {
    auto marks = LabelMarks();
    const auto& table = session_.table.Table();
    const auto cursor = session_.sheet.Cursor();
    const auto valid = [&](Cell cell) { return cell.row >= 1 && cell.row <= table.RowCount(); };
    if (cursor.IsData() && valid(CellAt(cursor, table.Type()))) marks.cursor = CellAt(cursor, table.Type());
    if (hover_ && valid(*hover_)) marks.hover = hover_;
    const auto& gesture = session_.gesture;
    if (gesture.kind == ChartGesture::Kind::Surface && gesture.PendingOffset != 0)
        marks.ghost = ShiftedTable(session_);
    if (gesture.kind == ChartGesture::Kind::Point && table.Type() == TableType::EX)
        marks.limit = CellLimit(session_.state, table.Type(), gesture.PickedCell());
    return marks;
}

void ChartView::UpdateLabel() {
    const auto& label = session_.chart.Label();
    label_->setText(ToQt(label.text));
    const bool shown = label.shown && Shown() && label.at.row <= scene_->mesh.RowCount();
    if (shown) {
        const auto callout = OverlayOf(*scene_, LabelMarks(), MeasureOn(BoldOf(font()), this)).callout;
        label_->setGeometry(ToQt(callout->box).toAlignedRect());
    }
    label_->setVisible(shown);
}

void ChartView::paintEvent(QPaintEvent*) {
    ++paints_;
    QPainter painter(this);
    const auto colours = ScreenColours(palette());
    if (!Shown()) {
        painter.fillRect(rect(), colours.background);
        return;
    }
    PaintScene(painter, *scene_, colours);
    PaintOverlay(painter, *scene_, OverlayOf(*scene_, Marks(), MeasureOn(BoldOf(font()), this)), colours);
}

void ChartView::DrawOnPaper(QPainter& painter, const QRectF& place) const {
    const auto& chartTemplate = session_.chart.Template();
    if (!session_.table.HasTable() || !chartTemplate) return;
    const double unitsPerPoint = painter.device()->logicalDpiY() / 72.0;
    PaintChart(painter, {place.left(), place.top(), place.width(), place.height()}, session_.table.Table(),
               *chartTemplate, viewpoint_, PaperColours(unitsPerPoint));
}

void ChartView::resizeEvent(QResizeEvent*) {
    Renew();
}

void ChartView::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::PaletteChange) Renew();
}

void ChartView::hideEvent(QHideEvent*) {
    dispatch_([this] {
        hover_.reset();
        motion_ = Motion::None;
        grab_.reset();
        ChartDragLost(session_);
    });
}

void ChartView::leaveEvent(QEvent*) {
    UpdateHover(std::nullopt);
}

std::optional<Cell> ChartView::CellUnder(Point mouse) {
    if (!Shown()) return std::nullopt;
    const auto nearest = NearestVisible(scene_->mesh, mouse, kPickRadius);
    return nearest ? std::optional(nearest->cell) : std::nullopt;
}

void ChartView::UpdateHover(std::optional<Point> mouse) {
    const auto hover = mouse && !session_.gate.Busy() ? CellUnder(*mouse) : std::nullopt;
    if (hover)
        setCursor(Qt::SizeVerCursor);
    else
        unsetCursor();
    if (hover == hover_) return;
    hover_ = hover;
    update();
}

void ChartView::mousePressEvent(QMouseEvent* event) {
    const auto mouse = At(event->position());
    if (event->button() == Qt::LeftButton && motion_ == Motion::None)
        dispatch_([&] { PressLeft(WholePixel(event->position()), event->modifiers()); });
    else if (event->button() == Qt::RightButton)
        StartMotion(Motion::Turn, mouse);
    else if (event->button() == Qt::MiddleButton)
        StartMotion(Motion::Pan, mouse);
}

void ChartView::StartMotion(Motion motion, Point mouse) {
    if (!session_.chart.Interactive() || grab_) return;
    motion_ = motion;
    lastMouse_ = mouse;
    setCursor(motion == Motion::Pan ? Qt::ClosedHandCursor : Qt::SizeAllCursor);
}

void ChartView::PressLeft(Point mouse, Qt::KeyboardModifiers modifiers) {
    modifiers &= ~Qt::KeypadModifier;
    if (modifiers == Qt::ControlModifier) StartMotion(Motion::Turn, mouse);
    const auto key = modifiers == Qt::NoModifier      ? PressKey::Plain
                     : modifiers == Qt::ShiftModifier ? PressKey::Shift
                                                      : PressKey::Other;
    const auto hit = key == PressKey::Other ? std::nullopt : CellUnder(mouse);
    ChartPress(session_, key, hit);
    grab_.reset();
    if (session_.gesture.kind == ChartGesture::Kind::None) return;
    const auto cell = session_.gesture.PickedCell();
    grab_ = Grab{cell, session_.table.Table().GetCell(cell), mouse};
    hover_.reset();
    update();
}

void ChartView::mouseMoveEvent(QMouseEvent* event) {
    dispatch_([&] { Move(WholePixel(event->position()), event->buttons()); });
}

void ChartView::Move(Point mouse, Qt::MouseButtons buttons) {
    const auto way = mouse - lastMouse_;
    lastMouse_ = mouse;
    if (buttons == Qt::NoButton) {
        motion_ = Motion::None;
        if (grab_) {
            grab_.reset();
            ChartDragLost(session_);
        }
        return UpdateHover(mouse);
    }
    if (motion_ == Motion::Turn) Look(Turned(viewpoint_, kDegreesPerPixel * way.x, kDegreesPerPixel * way.y));
    if (motion_ == Motion::Pan && Shown()) Look(Panned(viewpoint_, way, scene_->areas.plot));
    if (grab_ && Shown())
        ChartDrag(session_, ValueAtMouse(*grab_, mouse, scene_->projection, scene_->chartTemplate.advance));
}

void ChartView::mouseReleaseEvent(QMouseEvent* event) {
    dispatch_([&] {
        if (event->button() == Qt::LeftButton) {
            grab_.reset();
            ChartRelease(session_);
            update();
        }
        if (event->buttons() == Qt::NoButton) {
            motion_ = Motion::None;
            UpdateHover(At(event->position()));
        }
    });
}

void ChartView::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return mousePressEvent(event);
    dispatch_([&] { ChartDoubleClick(session_); });
}

void ChartView::wheelEvent(QWheelEvent* event) {
    if (!session_.chart.Interactive() || grab_ || !Shown()) return event->ignore();
    const double notches = event->angleDelta().y() / kNotch;
    Look(ZoomedAt(viewpoint_, std::pow(kZoomPerNotch, notches), At(event->position()), scene_->areas.plot));
    event->accept();
}

void ChartView::keyPressEvent(QKeyEvent* event) {
    if (!session_.chart.Interactive() || grab_ || !Shown()) return QWidget::keyPressEvent(event);
    const auto zoomed = [&](double factor) {
        return ZoomedAt(viewpoint_, factor, scene_->areas.plot.Centre(), scene_->areas.plot);
    };
    switch (event->key()) {
        case Qt::Key_Left:
            return Look(Turned(viewpoint_, -kDegreesPerKey, 0));
        case Qt::Key_Right:
            return Look(Turned(viewpoint_, kDegreesPerKey, 0));
        case Qt::Key_Up:
            return Look(Turned(viewpoint_, 0, kDegreesPerKey));
        case Qt::Key_Down:
            return Look(Turned(viewpoint_, 0, -kDegreesPerKey));
        case Qt::Key_Plus:
            return Look(zoomed(kZoomPerNotch));
        case Qt::Key_Minus:
            return Look(zoomed(1 / kZoomPerNotch));
        case Qt::Key_Home:
            return Look(ViewpointOf(*session_.chart.Template()));
        default:
            return QWidget::keyPressEvent(event);
    }
}

}  // namespace rv52
