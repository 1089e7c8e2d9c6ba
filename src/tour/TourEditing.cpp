// The steps of the tour that change the table and its parameters.
#include "app/ui/DesktopProgram.h"
#include "chart/ui/ChartView.h"
#include "chart/ui/QtPlane.h"
#include "platform/qt/QtText.h"
#include "table/Numbers.h"
#include "table/ui/GridView.h"
#include "tour/Tour.h"

#include <QLabel>
#include <QPushButton>
#include <QSlider>
#include <QTest>

namespace rv52 {

namespace {

template <class Widget>
Widget& Find(const QWidget& window, const char* name) {
    return *window.findChild<Widget*>(QString::fromLatin1(name));
}

void ClickOk(const QWidget& dialog) {
    QTest::mouseClick(&Find<QPushButton>(dialog, "cmdOK"), Qt::LeftButton);
}

}  // namespace

void Tour::EditCell() {
    QTest::mouseClick(program_.Window().findChild<GridView*>()->viewport(), Qt::LeftButton, {},
                      PlaceOf(kEdited));
    Picture("cell-selected");
    robot_.Type(FormatTenths(kAdvance));
    Picture("cell-editing");
    robot_.Press(Qt::Key_Return);
    Check(Degrees(kEdited) == kAdvance, "the typed advance is in the table");
    Picture("cell-edited");
    album_.Say("Changed one cell to " + FormatTenths(kAdvance) + " degrees");
}

// Two rows at the bottom, under full load, fall by a twentieth.
void Tour::ModifySelection() {
    constexpr GridCell first{GridRow(7), GridColumn(8)};
    constexpr GridCell last{GridRow(8), GridColumn(12)};
    auto* viewport = program_.Window().findChild<GridView*>()->viewport();
    QTest::mouseClick(viewport, Qt::LeftButton, {}, PlaceOf(first));
    QTest::mouseClick(viewport, Qt::LeftButton, Qt::ShiftModifier, PlaceOf(last));
    const double before = Degrees(last);
    robot_.ExpectInput("-5%", "modify");
    robot_.Press(Qt::Key_Menu);
    Picture("popup");
    robot_.ChooseFromPopup("mnuPopUpEdit3D", "mnuPopUpModify3D");
    Check(Degrees(last) < before, "the modified cells have fallen");
    Picture("modified");
    album_.Say("Lowered ten cells by 5 percent");
}

// The chart's label tells the point's value all the way; the grid's cell follows when the button is let go.
void Tour::DragPoint() {
    constexpr GridCell dragged{GridRow(5), GridColumn(9)};
    constexpr int kUpwards = 8;  // pixels
    auto& window = program_.Window();
    auto& chart = Find<ChartView>(window, "Chart3D1");
    const auto& label = Find<QLabel>(window, "lblChartValue");
    const auto& sheet = program_.Running().sheet;
    const double before = Degrees(dragged);
    const auto point = ToQt(chart.Shown()->mesh.At(CellAt(dragged, sheet.Type())).at).toPoint();
    robot_.Drag(chart, point, point - QPoint(0, kUpwards), [&] {
        Check(Degrees(dragged) > before, "the dragged point rises with the mouse");
        Check(label.isVisible() && FromQt(label.text()) == FormatTenths(Degrees(dragged)),
              "the chart's label shows the dragged value");
        Picture("chart-drag");
    });
    Check(!label.isVisible(), "the chart's label goes with the drag");
    Check(sheet.Text(dragged) == FormatTenths(Degrees(dragged)), "the cell shows the dragged value");
    Picture("chart-dragged");
    album_.Say("Dragged a point of the chart from " + FormatTenths(before) + " to " + sheet.Text(dragged) +
               " degrees");
}

// All three edits go back to what the module gave, and come again.
void Tour::UndoAndRedo() {
    const auto& session = program_.Running();
    const auto edited = session.table.Table();
    const auto text = session.sheet.Text(kEdited);
    const auto changed = session.history.ChangedCells();
    Check(changed == 12, "twelve cells differ from the module's");
    for (int step = 0; step < 3; ++step)
        robot_.Press(Qt::Key_Z, Qt::ControlModifier);
    Check(session.history.ChangedCells() == 0, "Ctrl+Z brings back the table of the module");
    Picture("undone");
    robot_.Press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    robot_.Press(Qt::Key_Y, Qt::ControlModifier);
    robot_.Press(Qt::Key_Y, Qt::ControlModifier);
    Check(session.table.Table() == edited && session.sheet.Text(kEdited) == text,
          "Ctrl+Shift+Z and Ctrl+Y make every edit again");
    Picture("redone");
    album_.Say("Took back three edits of " + std::to_string(changed) + " cells, and made them again");
}

void Tour::SetParameters() {
    const auto& parameters = program_.Running().state.ModuleParameters;
    const int before = parameters.RPMLimit;
    robot_.Expect("parameters-as-read", [this](QWidget& dialog) {
        auto& slider = Find<QSlider>(dialog, "sldRPMLimit");
        Check(slider.isVisible(), "the module's fixed RPM limit is on");
        QTest::keyClick(&slider, Qt::Key_PageUp);
        Picture("parameters");
        ClickOk(dialog);
    });
    robot_.Choose("mnuEdit", "mnuEditModParams");
    Check(parameters.RPMLimit == before + 1000, "the RPM limit has risen by a page");
    album_.Say("Raised the RPM limit to " + std::to_string(parameters.RPMLimit));
}

// Both switches stand at 0 first, which makes the lowest table, and then in the middle.
void Tour::MakeNewTable() {
    constexpr GridCell somewhere{GridRow(8), GridColumn(12)};
    double lowest = 0;
    robot_.ExpectBox("Save advance table before closing file?", "cmdNo");
    robot_.ExpectInput("EX", "table-type");
    robot_.Expect("new-table-switches", [&](QWidget& dialog) {
        QTest::mouseClick(&Find<QPushButton>(dialog, "cmdUpdate"), Qt::LeftButton);
        lowest = Degrees(somewhere);
        for (const auto* slider : {"sldInitTiming", "sldAdvSlope"})
            for (int setting = 0; setting < 5; ++setting)
                QTest::keyClick(&Find<QSlider>(dialog, slider), Qt::Key_Up);
        Picture("new-table-set");
        ClickOk(dialog);
    });
    robot_.Choose("mnuFile", "mnuNewTable");
    const auto& session = program_.Running();
    Check(session.state.TableShown && session.table.Table().Type() == TableType::EX,
          "a new EX table is on screen");
    Check(Degrees(somewhere) > lowest, "higher switches make more advance");
    Picture("new-table");
    album_.Say("Made a new EX table of two switch settings");
}

}  // namespace rv52
