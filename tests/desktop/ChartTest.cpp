#include "app/Commands.h"
#include "chart/ChartEditing.h"
#include "chart/ChartPainter.h"
#include "chart/ChartView.h"
#include "chart/QtPlane.h"
#include "support/IdleLine.h"
#include "support/ShownTable.h"
#include "support/TestSession.h"
#include "table/Numbers.h"

#include <QAccessible>
#include <QImage>
#include <QLabel>
#include <QPainter>
#include <QTest>
#include <QWheelEvent>

#include <gtest/gtest.h>
#include <random>
#include <set>

namespace rv52::test {
namespace {

class ChartTest : public testing::Test {
 protected:
    ChartTest() {
        view.resize(602, 351);
        view.show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&view));
    }

    void Show(TableType type, Limit limit = Limit::Minimum) {
        LoadChartTemplate(session, type);
        ShowAs(session, LoadLimitTable(session.files, type, limit).value());
        view.show();
        QCoreApplication::processEvents();
    }

    QPoint PixelOf(Cell cell) { return ToQt(view.Shown()->mesh.At(cell).at).toPoint(); }
    Cell AVisibleCell(TableType type) const { return {9, RowCount(type) / 2}; }
    double Degrees(Cell cell) const { return session.table.Table().GetCell(cell); }
    std::string Text(Cell cell) const {
        return session.sheet.Text(GridCellOf(cell, session.table.Table().Type()));
    }
    // The mouse's way for this many degrees upwards.
    int PixelsFor(double degrees) {
        const auto& scene = *view.Shown();
        return static_cast<int>(std::lround(degrees * scene.projection.UpScale() * kBoxHeight / 45));
    }
    void Drag(QPoint from, QPoint to, Qt::MouseButton button = Qt::LeftButton,
              Qt::KeyboardModifiers keys = {}) {
        QTest::mousePress(&view, button, keys, from);
        MoveHeld((from + to) / 2, button, keys);
        MoveHeld(to, button, keys);
        QTest::mouseRelease(&view, button, keys, to);
    }
    void MoveHeld(QPoint to, Qt::MouseButton button = Qt::LeftButton, Qt::KeyboardModifiers keys = {}) {
        QMouseEvent move(QEvent::MouseMove, to, view.mapToGlobal(QPointF(to)), Qt::NoButton, button, keys);
        QCoreApplication::sendEvent(&view, &move);
    }
    void Wheel(QPoint at, int notches) {
        QWheelEvent event(at, view.mapToGlobal(QPointF(at)), {}, {0, 120 * notches}, Qt::NoButton, {},
                          Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&view, &event);
    }
    // Paints that a change costs.
    int PaintsOf(const std::function<void()>& change) {
        QCoreApplication::processEvents();
        const int before = view.PaintCount();
        change();
        QCoreApplication::processEvents();
        return view.PaintCount() - before;
    }

    IdleLine line;
    TestSession test{line};
    Session& session = test.session;
    ChartView view{session, [](const auto& event) { event(); }};
};

TEST_F(ChartTest, DraggingAPointChangesItInBothTypes) {
    for (const auto type : {TableType::RACE, TableType::EX}) {
        Show(type);
        const auto cell = AVisibleCell(type);
        const double before = Degrees(cell);
        // Six pixels beside the point: the value is measured from where it was taken.
        const QPoint pressed = PixelOf(cell) + QPoint(6, -2);
        QTest::mousePress(&view, Qt::LeftButton, {}, pressed);
        EXPECT_EQ(session.sheet.Cursor(), GridCellOf(cell, type));
        EXPECT_EQ(session.chart.Label(), (ValueLabel{true, cell, FormatTenths(before)}));
        MoveHeld(pressed + QPoint(0, 1));
        EXPECT_NEAR(Degrees(cell), before, 0.7) << "a pixel is no jump";

        const int way = PixelsFor(4);
        MoveHeld(pressed + QPoint(3, way));
        EXPECT_NEAR(Degrees(cell), before - 4, 0.4);
        EXPECT_EQ(session.chart.Label().text, FormatTenths(Degrees(cell)));
        MoveHeld(pressed - QPoint(0, 4000));
        EXPECT_EQ(Degrees(cell), CellLimit(session.state, type, cell));
        MoveHeld(pressed + QPoint(0, 4000));
        EXPECT_EQ(Degrees(cell), 0);
        MoveHeld(pressed + QPoint(0, way));
        QTest::mouseRelease(&view, Qt::LeftButton, {}, pressed);
        EXPECT_EQ(Text(cell), FormatTenths(Degrees(cell)));
        EXPECT_FALSE(session.chart.Label().shown);
    }
}

TEST_F(ChartTest, ShiftDraggingMovesTheSurfaceAtTheReleaseWhicheverIsLetGoFirst) {
    for (const auto type : {TableType::RACE, TableType::EX}) {
        Show(type, Limit::Maximum);
        const auto before = session.table.Table();
        const auto cell = AVisibleCell(type);
        const QPoint pressed = PixelOf(cell);
        QTest::mousePress(&view, Qt::LeftButton, Qt::ShiftModifier, pressed);
        MoveHeld(pressed + QPoint(0, PixelsFor(5)), Qt::LeftButton, Qt::ShiftModifier);
        EXPECT_EQ(session.table.Table(), before);
        const double offset = session.gesture.PendingOffset;
        EXPECT_NEAR(offset, -2, 0.21);
        QTest::mouseRelease(&view, Qt::LeftButton, {}, pressed);  // Shift was let go before the button
        EXPECT_NEAR(Degrees(cell), before.GetCell(cell) + offset, 1e-9);
        EXPECT_EQ(Text({16, 1}), FormatTenths(before.GetCell({16, 1}) + offset));
        EXPECT_EQ(session.sheet.Cursor(), (GridCell{0, 0}));
    }
}

TEST_F(ChartTest, ThePointerTellsWhereAPointCanBeTaken) {
    Show(TableType::RACE);
    const QPoint corner = PixelOf({16, 1});
    const QPoint beside = corner + QPoint(16, 0);
    MoveHeld(corner, Qt::NoButton);
    EXPECT_EQ(view.cursor().shape(), Qt::SizeVerCursor);
    MoveHeld(beside, Qt::NoButton);
    EXPECT_EQ(view.cursor().shape(), Qt::ArrowCursor);
    QTest::mousePress(&view, Qt::LeftButton, {}, beside);
    EXPECT_FALSE(session.gesture.Picked());
}

TEST_F(ChartTest, OnlyRaceTablesAreTurnedShiftedAndZoomed) {
    const QPoint from(200, 200);
    const auto everything = [&] {
        std::vector<Viewpoint> seen;
        const auto note = [&](auto&& act) {
            act();
            seen.push_back(view.SeenFrom());
        };
        note([&] { Drag(from, from + QPoint(50, 20), Qt::RightButton); });
        note([&] { Drag(from, from + QPoint(30, 10), Qt::MiddleButton); });
        note([&] { Drag({5, 5}, {65, 5}, Qt::LeftButton, Qt::ControlModifier); });
        note([&] { Wheel(from, 2); });
        for (const auto key : {Qt::Key_Left, Qt::Key_Down, Qt::Key_Plus, Qt::Key_Minus, Qt::Key_Home})
            note([&] { QTest::keyClick(&view, key); });
        return seen;
    };

    Show(TableType::RACE);
    const auto home = ViewpointOf(*session.chart.Template());
    const auto turned = everything();
    EXPECT_NE(turned[0].azimuth, home.azimuth);
    EXPECT_GT(turned[0].elevation, home.elevation) << "dragged down, the plot is seen from higher up";
    EXPECT_GT(turned[1].pan.x, 0);
    EXPECT_NE(turned[2].azimuth, turned[1].azimuth);
    EXPECT_GT(turned[3].zoom, 1.3);
    EXPECT_DOUBLE_EQ(turned[4].azimuth, turned[3].azimuth - 5);
    EXPECT_GT(turned[6].zoom, turned[5].zoom);
    EXPECT_EQ(turned.back(), home);

    QTest::keyClick(&view, Qt::Key_Left);
    Show(TableType::EX);
    const auto still = ViewpointOf(*session.chart.Template());
    EXPECT_EQ(view.SeenFrom(), still) << "a new template is a new view";
    for (const auto& seen : everything())
        EXPECT_EQ(seen, still);
}

TEST_F(ChartTest, AnySuspendedChangeIsPaintedOnce) {
    Show(TableType::RACE);
    const auto manyCells = [&] {
        const RedrawHold hold(session.table);
        ForEachCell(TableType::RACE, [&](Cell cell) { session.table.SetCell(cell, 12); });
        session.chart.HideLabel();
        QCoreApplication::processEvents();
    };
    EXPECT_EQ(PaintsOf(manyCells), 1);
    EXPECT_EQ(PaintsOf([&] { Show(TableType::EX); }), 1) << "a load";
    const QPoint at = PixelOf({9, 5});
    EXPECT_EQ(PaintsOf([&] { QTest::mousePress(&view, Qt::LeftButton, {}, at); }), 1);
    for (const int way : {8, 16, 24})
        EXPECT_EQ(PaintsOf([&] { MoveHeld(at + QPoint(0, way)); }), 1) << "point and label";
    EXPECT_EQ(PaintsOf([&] { QTest::mouseRelease(&view, Qt::LeftButton, {}, at); }), 1);
    EXPECT_EQ(PaintsOf([&] { session.chart.HideLabel(); }), 0) << "it is hidden already";
}

TEST_F(ChartTest, TheValueLabelIsReadAloudAndStaysInside) {
    Show(TableType::EX);
    auto* label = view.findChild<QLabel*>(QStringLiteral("lblChartValue"));
    for (const Cell cell : {Cell{1, 1}, Cell{16, 11}}) {
        MoveGridCursor(session, GridCellOf(cell, TableType::EX));
        EXPECT_TRUE(label->isVisible());
        EXPECT_EQ(QAccessible::queryAccessibleInterface(label)->text(QAccessible::Name).toStdString(),
                  FormatTenths(Degrees(cell)));
        EXPECT_TRUE(view.rect().contains(label->geometry()));
    }
    EscapePressed(session);
    EXPECT_FALSE(label->isVisible());
}

TEST_F(ChartTest, ARefusedEditKeepsTheFocusFromAPress) {
    Show(TableType::RACE);
    view.clearFocus();
    for (const bool accepts : {false, true}) {
        test.view.editorAccepts = accepts;
        QTest::mouseClick(&view, Qt::LeftButton, {}, PixelOf(AVisibleCell(TableType::RACE)));
        EXPECT_EQ(view.hasFocus(), accepts);
    }
}

// The mouse of a clumsy hand, and a release that a message box swallowed: the next table is not half dragged.
TEST_F(ChartTest, ADragEndsWhenItsButtonIsFoundUpOrTheChartIsHidden) {
    Show(TableType::RACE);
    const auto cell = AVisibleCell(TableType::RACE);
    for (const auto other : {Qt::NoButton, Qt::RightButton}) {
        const QPoint at = PixelOf(cell);
        QTest::mousePress(&view, Qt::LeftButton, {}, at);
        MoveHeld(at + QPoint(0, 15));
        const double dragged = Degrees(cell);
        MoveHeld(at + QPoint(0, 60), other);
        EXPECT_EQ(Degrees(cell), dragged);
        EXPECT_EQ(Text(cell), FormatTenths(dragged));
        MoveHeld(at, Qt::NoButton);
    }
    Show(TableType::RACE);
    const auto before = session.table.Table();
    const auto seen = view.SeenFrom();
    QTest::mousePress(&view, Qt::RightButton, {}, PixelOf(cell));
    QMouseEvent press(QEvent::MouseButtonPress, PixelOf(cell), view.mapToGlobal(QPointF(PixelOf(cell))),
                      Qt::LeftButton, Qt::LeftButton, Qt::ShiftModifier);
    QCoreApplication::sendEvent(&view, &press);
    EXPECT_EQ(session.gesture.kind, ChartGesture::Kind::Surface) << "the right button's release was lost";
    EXPECT_EQ(view.SeenFrom(), seen);
    MoveHeld(PixelOf(cell) + QPoint(0, 60), Qt::LeftButton, Qt::ShiftModifier);
    view.hide();
    EXPECT_EQ(session.gesture.kind, ChartGesture::Kind::None);
    EXPECT_EQ(session.table.Table(), before);
}

TEST_F(ChartTest, AnyMouseLeavesTableChartAndGridAgreeing) {
    const Qt::MouseButton buttons[] = {Qt::LeftButton, Qt::LeftButton, Qt::LeftButton, Qt::RightButton,
                                       Qt::MiddleButton};
    const Qt::KeyboardModifiers keys[] = {Qt::NoModifier, Qt::NoModifier, Qt::ShiftModifier,
                                          Qt::ControlModifier};
    for (unsigned seed = 1; seed <= 120; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        const auto roll = [&](int most) { return std::uniform_int_distribution<int>(0, most)(random); };
        Show(seed % 2 ? TableType::RACE : TableType::EX);
        const auto type = session.table.Table().Type();
        for (int gesture = 0; gesture < 8; ++gesture) {
            // On a point as often as anywhere.
            const QPoint from = roll(1) ? PixelOf({1 + roll(15), 1 + roll(RowCount(type) - 1)})
                                        : QPoint(roll(601), roll(350));
            Drag(from, {roll(601), roll(350)}, buttons[roll(4)], keys[roll(3)]);
            if (roll(5) == 0) Wheel(from, 1 - roll(2));
            if (roll(9) > 0) continue;
            QTest::mouseDClick(&view, Qt::LeftButton, {}, from);
            QTest::mouseRelease(&view, Qt::LeftButton, {}, from);
            EXPECT_FALSE(session.gesture.ReleaseSuppressed) << "its release has ended it";
        }
        ForEachCell(type, [&](Cell cell) {
            EXPECT_EQ(Text(cell), FormatTenths(Degrees(cell)));
            EXPECT_EQ(view.Shown()->mesh.At(cell).height, Degrees(cell));
            EXPECT_GE(Degrees(cell), 0);
            EXPECT_LE(Degrees(cell), CellLimit(session.state, type, cell));
        });
        EXPECT_FALSE(session.chart.Label().shown);
    }
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
    std::set<QRgb> colours;
    for (int y = 0; y < page.height(); ++y)
        for (int x = 0; x < page.width(); ++x) {
            if (place.contains(x, y))
                colours.insert(page.pixel(x, y));
            else
                ASSERT_EQ(page.pixel(x, y), QColor(Qt::cyan).rgb()) << x << ", " << y;
        }
    for (const auto& band : session.chart.Template()->bands)
        EXPECT_TRUE(colours.count(ToQt(band).rgb())) << "every band, if only in the legend";
    EXPECT_FALSE(colours.count(QColor(Qt::cyan).rgb()));
}

// The fill has no seams: inside the surface, away from the lines of the mesh, nothing but band colours.
TEST_F(ChartTest, NeighbouringBandsLeaveNoSeams) {
    Show(TableType::EX, Limit::Maximum);
    auto scene = *view.Shown();
    auto colours = ScreenColours(view.palette());
    colours.background = colours.floor = colours.wall = colours.wallLine = colours.wallEdge = Qt::red;
    QImage picture(602, 351, QImage::Format_RGB32);
    QPainter painter(&picture);
    PaintScene(painter, scene, colours);
    painter.end();
    int reds = 0;
    for (int column = 1; column < kColumnCount; ++column)
        for (int row = 1; row < 11; ++row) {
            const auto diagonal = scene.mesh.At({column, row}).at + scene.mesh.At({column + 1, row + 1}).at;
            const QPoint middle = ToQt(diagonal * 0.5).toPoint();
            for (int x = -3; x <= 3; ++x)
                for (int y = -2; y <= 2; ++y)
                    reds += picture.pixelColor(middle + QPoint(x, y)) == QColor(Qt::red);
        }
    EXPECT_EQ(reds, 0);
}

}  // namespace
}  // namespace rv52::test
