#include "chart/ui/ChartView.h"

#include "app/state/Session.h"
#include "chart/commands/ChartEditing.h"
#include "chart/ui/ChartPainter.h"
#include "chart/ui/QtPlane.h"
#include "platform/qt/QtText.h"

#include <QFocusEvent>
#include <QLabel>
#include <QPainter>

namespace rv52 {

namespace {

// In the accessibility tree only.
class SpokenLabel : public QLabel {
 public:
    using QLabel::QLabel;

 protected:
    void paintEvent(QPaintEvent*) override {}
};

bool Holds(const AdvanceTable& table, Cell cell) {
    return cell.row >= 1 && cell.row <= table.RowCount();
}

}  // namespace

ChartView::ChartView(Session& session, Dispatch dispatch, QWidget* parent)
    : QWidget(parent), session_(session), dispatch_(std::move(dispatch)), label_(new SpokenLabel(this)) {
    setObjectName(QStringLiteral("Chart3D1"));
    setAccessibleName(tr("Advance surface"));
    setAccessibleDescription(
        tr("The advance table as a surface over engine speed and manifold pressure. "
           "Drag a point up or down to change its advance; with Shift, that of the whole surface."));
    // It paints all of itself: what is under it is never painted first.
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMouseTracking(true);
    setFocusPolicy(Qt::TabFocus);                  // a press takes it too, once an open edit has ended
    setContextMenuPolicy(Qt::PreventContextMenu);  // the right button turns the plot
    label_->setObjectName(QStringLiteral("lblChartValue"));
    label_->setTextFormat(Qt::PlainText);
    label_->setAttribute(Qt::WA_TransparentForMouseEvents);
    label_->setUpdatesEnabled(false);  // its appearing would paint the chart below a second time
    label_->hide();

    const auto cursorMoved = [this](GridSheet::Change change) {
        if (change == GridSheet::Change::Cursor || change == GridSheet::Change::Layout) update();
    };
    listening_ = {session_.table.OnRedraw([this] { Renew(); }), session_.sheet.OnChange(cursorMoved)};
}

const std::optional<Scene>& ChartView::Shown() {
    const auto& chartTemplate = session_.chart.Template();
    if (!scene_ && !broken_ && session_.table.HasTable() && chartTemplate) {
        const Area whole{0, 0, static_cast<double>(width()), static_cast<double>(height())};
        scene_ = SceneOf(session_.table.Table(), *chartTemplate, viewpoint_, whole, MeasureOn(font(), this));
    }
    return scene_;
}

void ChartView::Renew() {
    scene_.reset();
    broken_ = false;
    if (templateSerial_ != session_.chart.TemplateSerial()) {
        templateSerial_ = session_.chart.TemplateSerial();
        viewpoint_ = ViewpointOf(*session_.chart.Template());
    }
    update();
    Try([this] { UpdateLabel(); });
}

void ChartView::Try(const std::function<void()>& draw) {
    if (broken_) return;
    bool drawn = false;
    const auto whole = [&] {
        draw();
        drawn = true;
    };
    session_.drawing.Guard(whole, [this] { Renew(); });
    broken_ = !drawn;
}

void ChartView::Look(const Viewpoint& viewpoint) {
    if (viewpoint == viewpoint_) return;
    viewpoint_ = viewpoint;
    Renew();
}

ChartMarks ChartView::LabelMarks() const {
    ChartMarks marks;
    const auto& label = session_.chart.Label();
    if (!label.shown || !Holds(session_.table.Table(), label.at)) return marks;
    marks.labelled = label.at;
    marks.label = label.text;
    return marks;
}

ChartMarks ChartView::Marks() const {
    auto marks = LabelMarks();
    const auto& table = session_.table.Table();
    const auto cursor = session_.sheet.Cursor();
    if (cursor.IsData() && Holds(table, CellAt(cursor, table.Type())))
        marks.cursor = CellAt(cursor, table.Type());
    if (hover_ && Holds(table, *hover_)) marks.hover = hover_;

    const auto& gesture = session_.gesture;
    if (gesture.kind == ChartGesture::Kind::Surface && gesture.PendingOffset != 0)
        marks.ghost = ShiftedTable(session_);
    if (gesture.kind == ChartGesture::Kind::Point && table.Type() == TableType::EX)
        marks.limit = CellLimit(session_.state, table.Type(), gesture.PickedCell());
    return marks;
}

void ChartView::UpdateLabel() {
    label_->setText(ToQt(session_.chart.Label().text));
    const bool shown = session_.chart.Label().shown && Shown() && LabelMarks().labelled;
    if (shown) {
        const auto callout = OverlayOf(*scene_, LabelMarks(), MeasureOn(BoldOf(font()), this)).callout;
        label_->setGeometry(ToQt(callout->box).toAlignedRect());
    }
    label_->setVisible(shown);
}

void ChartView::Paint() {
    QPainter painter(this);
    const auto colours = ScreenColours(palette());
    if (Shown()) {
        PaintScene(painter, *scene_, colours);
        PaintOverlay(painter, *scene_, OverlayOf(*scene_, Marks(), MeasureOn(BoldOf(font()), this)), colours);
    } else {
        painter.fillRect(rect(), colours.background);
    }
    if (!focusShown_) return;
    painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
    painter.drawRect(rect().adjusted(1, 1, -1, -1));
}

void ChartView::DrawOnPaper(QPainter& painter, const QRectF& place) const {
    const auto& chartTemplate = session_.chart.Template();
    if (!session_.table.HasTable() || !chartTemplate) return;
    const double unitsPerPoint = painter.device()->logicalDpiY() / 72.0;
    PaintChart(painter, {place.left(), place.top(), place.width(), place.height()}, session_.table.Table(),
               *chartTemplate, viewpoint_, PaperColours(unitsPerPoint));
}

void ChartView::paintEvent(QPaintEvent*) {
    ++paints_;
    Try([this] { Paint(); });
    if (broken_) QPainter(this).fillRect(rect(), ScreenColours(palette()).background);
}

// The mouse's way to a value is measured on the plot as it was.
void ChartView::resizeEvent(QResizeEvent*) {
    dispatch_([this] { DropDrags(); });
    Renew();
}

void ChartView::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::PaletteChange) Renew();
}

void ChartView::hideEvent(QHideEvent*) {
    dispatch_([this] {
        DropDrags();
        Hover(std::nullopt);
    });
}

// A frame for those who came by the keyboard; a mouse shows by itself where it is.
void ChartView::focusInEvent(QFocusEvent* event) {
    focusShown_ = event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason;
    update();
}

void ChartView::focusOutEvent(QFocusEvent*) {
    focusShown_ = false;
    update();
}

}  // namespace rv52
