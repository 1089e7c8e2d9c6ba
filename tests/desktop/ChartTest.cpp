#include "UserActions.h"
#include "app/WindowKeys.h"
#include "chart/ui/ChartPainter.h"
#include "chart/ui/ChartView.h"
#include "chart/ui/QtPlane.h"
#include "table/Numbers.h"
#include "table/commands/GridCursor.h"
#include "table/commands/LoadChartTemplate.h"

#include <QAccessible>
#include <QLabel>
#include <QPainter>

#include <set>

namespace rv52::test {

constexpr Cell kVisible{Column(9), Row(4)};

class ChartTest : public WidgetTest {
 protected:
    ChartTest() {
        view.resize(602, 351);
        Activate(view);
    }
    void Show(TableType type, Limit limit = Limit::Minimum) {
        LoadChartTemplate(session, type);
        ShowAs(session, LoadLimitTable(session.files, type, limit).value());
        view.show();
        QCoreApplication::processEvents();
    }

    QPoint PixelOf(Cell cell) { return ToQt(view.Shown()->mesh.At(cell).at).toPoint(); }
    double Degrees(Cell cell) const { return session.table.Table().GetCell(cell); }
    std::string Text(Cell cell) const {
        return session.sheet.Text(GridCellOf(cell, session.table.Table().Type()));
    }
    // The mouse's way for this many degrees downwards.
    QPoint WayFor(double degrees) {
        const double way = degrees * view.Shown()->projection.UpScale() * kBoxHeight / 45;
        return {0, static_cast<int>(std::lround(way))};
    }
    void Press(QPoint at, Qt::KeyboardModifiers keys = {}) {
        QTest::mousePress(&view, Qt::LeftButton, keys, at);
    }
    void Release(QPoint at) { QTest::mouseRelease(&view, Qt::LeftButton, {}, at); }
    void Drag(QPoint from, QPoint to, Qt::MouseButton button, Qt::KeyboardModifiers keys = {}) {
        QTest::mousePress(&view, button, keys, from);
        MoveHeld(view, (from + to) / 2, button, keys);
        MoveHeld(view, to, button, keys);
        QTest::mouseRelease(&view, button, keys, to);
    }
    // With these buttons down from then on.
    void Send(QEvent::Type type, QPoint at, Qt::MouseButton button, Qt::MouseButtons held,
              Qt::KeyboardModifiers keys = {}) {
        QMouseEvent event(type, at, view.mapToGlobal(QPointF(at)), button, held, keys);
        QApplication::sendEvent(&view, &event);
    }

    ChartView view{session, [](const auto& event) { event(); }};
};

TEST_F(ChartTest, DraggingAPointChangesItInBothTypes) {
    for (const auto type : {TableType::RACE, TableType::EX}) {
        SCOPED_TRACE(ToText(type));
        Show(type);
        const double before = Degrees(kVisible);
        // Six pixels beside the point: the value is measured from where it was taken.
        const QPoint pressed = PixelOf(kVisible) + QPoint(6, -2);
        Press(pressed);
        MoveHeld(view, pressed + QPoint(0, 1));
        EXPECT_NEAR(Degrees(kVisible), before, 0.7);
        MoveHeld(view, pressed + WayFor(4) + QPoint(3, 0));
        EXPECT_NEAR(Degrees(kVisible), before - 4, 0.4);
        Release(pressed);
        EXPECT_EQ(Text(kVisible), FormatTenths(Degrees(kVisible)));
        EXPECT_EQ(view.Shown()->mesh.At(kVisible).height, Degrees(kVisible));
    }
}

TEST_F(ChartTest, ShiftDraggingMovesTheSurfaceAtTheReleaseWhicheverIsLetGoFirst) {
    Show(TableType::EX, Limit::Maximum);
    const auto before = session.table.Table();
    const QPoint pressed = PixelOf(kVisible);
    Press(pressed, Qt::ShiftModifier);
    MoveHeld(view, pressed + WayFor(5), Qt::LeftButton, Qt::ShiftModifier);
    EXPECT_EQ(session.table.Table(), before);
    const double offset = session.gesture.PendingOffset;
    EXPECT_NEAR(offset, -2, 0.21);
    Release(pressed);  // Shift was let go before the button
    EXPECT_NEAR(Degrees(kVisible), before.GetCell(kVisible) + offset, 1e-9);
}

TEST_F(ChartTest, ThePointerTellsWhereAPointCanBeTakenAndAPressTakesTheFocus) {
    Show(TableType::RACE);
    const QPoint corner = PixelOf({Column(16), Row(1)});
    for (const auto& [what, place, shape] : {std::tuple("a point", corner, Qt::SizeVerCursor),
                                             {"beside it", corner + QPoint(16, 0), Qt::ArrowCursor}}) {
        SCOPED_TRACE(what);
        MoveHeld(view, place, Qt::NoButton);
        EXPECT_EQ(view.cursor().shape(), shape);
        for (const bool accepts : {false, true}) {
            test.view.editorAccepts = accepts;  // a refused edit keeps the focus and the press
            view.clearFocus();
            Press(place);
            EXPECT_EQ(view.hasFocus(), accepts);
            EXPECT_EQ(session.gesture.kind == ChartGesture::Kind::Point,
                      accepts && shape == Qt::SizeVerCursor);
            Release(place);
        }
    }
}

TEST_F(ChartTest, OnlyRaceTablesAreTurnedShiftedAndZoomed) {
    const QPoint from(200, 200);
    const auto key = [this](Qt::Key pressed) { return [this, pressed] { QTest::keyClick(&view, pressed); }; };
    // What each does to azimuth, elevation, zoom and the way to the right: more, less, or nothing.
    const std::pair<const char*, Act> steps[] = {
        {"++..", [&] { Drag(from, from + QPoint(50, 20), Qt::RightButton); }},
        {"...+", [&] { Drag(from, from + QPoint(30, 10), Qt::MiddleButton); }},
        {"+...", [&] { Drag(from, from + QPoint(60, 0), Qt::LeftButton, Qt::ControlModifier); }},
        {"-...", key(Qt::Key_Left)},
        {".-..", key(Qt::Key_Down)},
        {"..++", key(Qt::Key_Plus)},
        {"..--", key(Qt::Key_Minus)},
        {"..++", [&] { Wheel(view, from, 2); }}};
    for (const auto type : {TableType::RACE, TableType::EX}) {
        SCOPED_TRACE(ToText(type));
        Show(type);
        const auto home = ViewpointOf(*session.chart.Template());
        EXPECT_EQ(view.SeenFrom(), home) << "a new template is a new view";
        key(Qt::Key_Left)();
        key(Qt::Key_Home)();
        EXPECT_EQ(view.SeenFrom(), home);
        for (const auto& [changes, act] : steps) {
            const auto before = view.SeenFrom();
            act();
            const auto after = view.SeenFrom();
            std::string seen;
            for (const double change : {after.azimuth - before.azimuth, after.elevation - before.elevation,
                                        after.zoom - before.zoom, after.pan.x - before.pan.x}) {
                const char direction = change > 0 ? '+' : '-';
                seen += change == 0 ? '.' : direction;
            }
            EXPECT_EQ(seen, type == TableType::RACE ? changes : "....");
        }
    }
}

TEST_F(ChartTest, AnyChangeIsPaintedOnce) {
    Show(TableType::RACE);
    const auto manyCells = [&] {
        const RedrawHold hold(session.table);
        ForEachCell(TableType::RACE, [&](Cell cell) { session.table.SetCell(cell, 12); });
        session.chart.HideLabel();
        QCoreApplication::processEvents();
    };
    EXPECT_EQ(PaintsOf(view, manyCells), 1);
    EXPECT_EQ(PaintsOf(view, [&] { Show(TableType::EX); }), 1) << "a load";
    const QPoint at = PixelOf(kVisible);
    EXPECT_EQ(PaintsOf(view, [&] { Press(at); }), 1);
    EXPECT_EQ(PaintsOf(view, [&] { MoveHeld(view, at + QPoint(0, 8)); }), 1) << "point and label";
    EXPECT_EQ(PaintsOf(view, [&] { Release(at); }), 1);
    EXPECT_EQ(PaintsOf(view, [&] { session.chart.HideLabel(); }), 0) << "it is hidden already";
}

TEST_F(ChartTest, TheValueLabelIsReadAloudAndStaysInside) {
    Show(TableType::EX);
    auto& label = Find<QLabel>(view, "lblChartValue");
    const Cell corner{Column(16), Row(11)};
    MoveGridCursor(session, GridCellOf(corner, TableType::EX));
    EXPECT_TRUE(label.isVisible());
    EXPECT_EQ(FromQt(QAccessible::queryAccessibleInterface(&label)->text(QAccessible::Name)),
              FormatTenths(Degrees(corner)));
    EXPECT_TRUE(view.rect().contains(label.geometry()));
    EscapePressed(session);
    EXPECT_FALSE(label.isVisible());
}

// The mouse of a clumsy hand, and a release that a message box swallowed: the next table is not half dragged.
TEST_F(ChartTest, ADragEndsWhenItsButtonIsFoundUpOrTheChartIsHidden) {
    for (const auto other : {Qt::NoButton, Qt::RightButton}) {
        SCOPED_TRACE(other);
        Show(TableType::RACE);
        const QPoint at = PixelOf(kVisible);
        Press(at);
        MoveHeld(view, at + QPoint(0, 15));
        const double dragged = Degrees(kVisible);
        MoveHeld(view, at - QPoint(0, 15), other);
        EXPECT_EQ(Degrees(kVisible), dragged);
        QTest::mouseDClick(&view, Qt::LeftButton, {}, at);
        EXPECT_TRUE(session.gesture.ReleaseSuppressed);
        Release(at);
        EXPECT_FALSE(session.gesture.ReleaseSuppressed);
    }
    Show(TableType::RACE);
    const auto before = session.table.Table();
    const QPoint at = PixelOf(kVisible);
    QTest::mousePress(&view, Qt::RightButton, {}, at);
    Send(QEvent::MouseButtonPress, at, Qt::LeftButton, Qt::LeftButton, Qt::ShiftModifier);
    EXPECT_EQ(session.gesture.kind, ChartGesture::Kind::Surface) << "the right button's release was lost";
    MoveHeld(view, at + QPoint(0, 60), Qt::LeftButton, Qt::ShiftModifier);
    view.hide();
    EXPECT_EQ(session.gesture.kind, ChartGesture::Kind::None);
    EXPECT_EQ(session.table.Table(), before);
}

// Each button has its own drag, whatever the others do.
TEST_F(ChartTest, APlotDragEndsWithItsOwnButton) {
    Show(TableType::RACE);
    const QPoint from(5, 200);
    const auto both = Qt::LeftButton | Qt::RightButton;
    for (const bool released : {true, false}) {
        SCOPED_TRACE(released);
        Send(QEvent::MouseButtonPress, from, Qt::RightButton, Qt::RightButton);
        Send(QEvent::MouseButtonPress, from, Qt::LeftButton, both);
        auto before = view.SeenFrom();
        Send(QEvent::MouseMove, from + QPoint(20, 0), Qt::NoButton, both);
        EXPECT_NE(view.SeenFrom(), before) << "the right button is still down";
        if (released) Send(QEvent::MouseButtonRelease, from + QPoint(20, 0), Qt::RightButton, Qt::LeftButton);
        before = view.SeenFrom();
        Send(QEvent::MouseMove, from + QPoint(60, 0), Qt::NoButton, Qt::LeftButton);
        EXPECT_EQ(view.SeenFrom(), before);
        EXPECT_EQ(view.cursor().shape(), Qt::ArrowCursor);
        Send(QEvent::MouseButtonRelease, from, Qt::LeftButton, Qt::NoButton);
    }
}

TEST_F(ChartTest, CtrlAndTheLeftButtonTurnHoweverSoonItIsPressedAgain) {
    Show(TableType::RACE);
    const QPoint from(5, 5);
    QTest::mouseClick(&view, Qt::LeftButton, Qt::ControlModifier, from);
    Send(QEvent::MouseButtonDblClick, from, Qt::LeftButton, Qt::LeftButton, Qt::ControlModifier);
    const auto before = view.SeenFrom();
    MoveHeld(view, from + QPoint(60, 0), Qt::LeftButton, Qt::ControlModifier);
    EXPECT_GT(view.SeenFrom().azimuth, before.azimuth);
    QTest::mouseRelease(&view, Qt::LeftButton, Qt::ControlModifier, from + QPoint(60, 0));
    Press(PixelOf(kVisible));
    EXPECT_EQ(session.gesture.kind, ChartGesture::Kind::Point) << "and the next press works normally";
}

// A limit mark of no point: the drawing fails, which is no reason to stop, nor to ask at every paint.
TEST_F(ChartTest, WhatCannotBePaintedIsKeptAndPaintedAgainOnRetry) {
    Show(TableType::EX);
    const auto whole = view.grab().toImage();
    int kept = 0;
    const auto listening = session.drawing.OnKept([&] { ++kept; });
    session.gesture.kind = ChartGesture::Kind::Point;
    session.table.Touch();
    view.repaint();
    view.repaint();
    EXPECT_EQ(kept, 1);
    EXPECT_EQ(view.grab().toImage().pixelColor(300, 175), ScreenColours(view.palette()).background);
    session.gesture = {};
    test.prompts.ExpectError("no such cell in an advance table", Answer::Retry);
    session.drawing.Tell(session.steps);
    EXPECT_EQ(view.grab().toImage(), whole);
}

TEST_F(ChartTest, PaperGetsThePlotIntoItsRectangleAndNowhereElse) {
    Show(TableType::EX, Limit::Maximum);
    const QRect place(100, 200, 2000, 1200);
    QImage page(2200, 1500, QImage::Format_RGB32);
    page.setDotsPerMeterX(7874);
    page.setDotsPerMeterY(7874);
    page.fill(Qt::cyan);
    QPainter painter(&page);
    view.DrawOnPaper(painter, place);
    std::set<QRgb> inside;
    std::set<QRgb> outside;
    for (int y = 0; y < page.height(); ++y)
        for (int x = 0; x < page.width(); ++x)
            (place.contains(x, y) ? inside : outside).insert(page.pixel(x, y));
    const auto blank = QColor(Qt::cyan).rgb();
    EXPECT_EQ(outside, std::set{blank});
    EXPECT_FALSE(inside.contains(blank));
    for (const auto& band : session.chart.Template()->bands)
        EXPECT_TRUE(inside.contains(ToQt(band).rgb())) << "every band, if only in the legend";
}

// The fill has no seams: inside the surface, away from the lines of the mesh, nothing but band colours.
TEST_F(ChartTest, NeighbouringBandsLeaveNoSeams) {
    Show(TableType::EX, Limit::Maximum);
    const auto& scene = *view.Shown();
    auto colours = ScreenColours(view.palette());
    colours.background = colours.floor = colours.wall = colours.wallLine = colours.wallEdge = Qt::red;
    QImage picture(view.size(), QImage::Format_RGB32);
    QPainter painter(&picture);
    PaintScene(painter, scene, colours);
    painter.end();
    for (int column = 1; column < kColumnCount; ++column)
        for (int row = 1; row < 11; ++row) {
            const auto diagonal = scene.mesh.At({Column(column), Row(row)}).at +
                                  scene.mesh.At({Column(column + 1), Row(row + 1)}).at;
            const QPoint middle = ToQt(diagonal * 0.5).toPoint();
            for (int x = -3; x <= 3; ++x)
                for (int y = -2; y <= 2; ++y)
                    EXPECT_NE(picture.pixelColor(middle + QPoint(x, y)), Qt::red) << column << ", " << row;
        }
}

}  // namespace rv52::test
