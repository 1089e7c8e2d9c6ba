#pragma once

#include "app/state/Listeners.h"
#include "chart/Overlay.h"
#include "chart/Picking.h"
#include "chart/Scene.h"
#include "chart/Viewpoint.h"

#include <QWidget>

#include <functional>
#include <optional>
#include <vector>

class QLabel;

namespace rv52 {

struct Session;

// The current table as a surface, and the mouse and keyboard on it. Left drags change the table in both
// types; turning, shifting and zooming the plot work while the chart is interactive.
class ChartView : public QWidget {
    Q_OBJECT

 public:
    // Runs a handler of this view's events; whatever it throws ends in the failure box.
    using Dispatch = std::function<void(std::function<void()>)>;

    ChartView(Session& session, Dispatch dispatch, QWidget* parent = nullptr);

    // The plot as it is on screen now; nothing without a table. Places are in the widget's pixels.
    const std::optional<Scene>& Shown();
    const Viewpoint& SeenFrom() const { return viewpoint_; }
    // The same plot on paper, into a rectangle of a printer page: without the value label and the marks, and
    // with the painter's font. Nothing is drawn without a table.
    void DrawOnPaper(QPainter& painter, const QRectF& place) const;
    // How often the view has been painted.
    int PaintCount() const { return paints_; }

    QSize sizeHint() const override { return {600, 350}; }

 protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

 private:
    // Something that the plot shows has changed: it is made anew when next needed.
    void Renew();
    // Once something could not be drawn there is no plot, until something changes or Retry asks for it.
    void Try(const std::function<void()>& draw);
    void Look(const Viewpoint& viewpoint);
    void UpdateLabel();
    ChartMarks LabelMarks() const;
    ChartMarks Marks() const;
    void Paint();

    // Turning, shifting and zooming: for interactive charts, and not while a point is being dragged.
    bool CanMovePlot();
    void StartPlotDrag(PlotDrag::Kind kind, Point mouse, Qt::MouseButton button);
    void EndPlotDrag();
    void PressLeft(Point mouse, Qt::KeyboardModifiers modifiers);
    void Move(Point mouse, Qt::MouseButtons buttons);
    void Hover(std::optional<Point> mouse);
    void DropDrags();
    void DropGrab();

    Session& session_;
    Dispatch dispatch_;
    QLabel* label_;  // the value label as assistive tools find it; the painter draws it
    Viewpoint viewpoint_;
    int templateSerial_ = 0;
    std::optional<Scene> scene_;
    std::optional<Grab> grab_;
    std::optional<PlotDrag> plotDrag_;
    Qt::MouseButton plotButton_ = Qt::NoButton;  // that drags it
    std::optional<Cell> hover_;
    bool focusShown_ = false;
    bool broken_ = false;  // the plot as it is now could not be drawn
    int paints_ = 0;
    std::vector<Listening> listening_;
};

}  // namespace rv52
