#include "tour/Tour.h"

#include "app/DesktopProgram.h"
#include "app/HelpWindow.h"
#include "chart/ChartView.h"
#include "platform/qt/Text.h"
#include "table/GridView.h"

#include <QApplication>
#include <QFile>
#include <QProgressBar>
#include <QPushButton>
#include <QSlider>
#include <QTest>

#include <cmath>
#include <cstdio>

namespace rv52 {

namespace {

// Where the tour changes a value, and to what: RPM 1500, MAP 22, near the middle of the grid.
constexpr GridCell kEdited{4, 4};
constexpr double kAdvance = 31.5;

constexpr const char* kSplash = "splash";
constexpr int kSplashPatience = 10000;  // ms

QString TableFile(const QDir& folder) {
    return folder.filePath(QStringLiteral("tour.tbl"));
}

}  // namespace

Tour::Tour(DesktopProgram& program, const QString& folder)
    : program_(program), robot_(program.Window()), folder_(folder) {
    // Given a moment, the windows paint as a user sees them.
    robot_.onBox = [this](const std::string& what) {
        if (what != "file dialog" && what != kSplash) Picture("box");
    };
}

bool Tour::Run() {
    if (!Start()) return false;
    program_.Window().activateWindow();
    Check(QTest::qWaitForWindowActive(&program_.Window()), "the main window appears");
    Picture("main-window");
    Download();
    EditCell();
    ModifySelection();
    SetParameters();
    SaveAndOpen();
    Upload();
    Print();
    Help();
    About();
    Leave();
    Check(robot_.Done(), "every expected box appeared");
    for (const auto& problem : robot_.Problems())
        std::fprintf(stderr, "PROBLEM: %s\n", problem.c_str());
    return robot_.Problems().empty();
}

bool Tour::Start() {
    robot_.Expect(kSplash, [this](QWidget& splash) {
        PictureOf(splash, "splash");
        Check(QTest::qWaitFor([&] { return !splash.isVisible(); }, kSplashPatience), "the splash goes away");
    });
    return program_.Start();
}

void Tour::Download() {
    robot_.ExpectBox("Firmware ID: ", "cmdOK");
    PictureProgress("reading");
    robot_.Choose("mnuComm", "mnuDownload");
    Check(program_.Running().state.TableShown, "the downloaded table is on screen");
    Check(FromQt(program_.Window().windowTitle()) ==
              program_.Running().state.BaseCaption + " - Downloaded Data",
          "the caption tells of downloaded data");
    Picture("downloaded");
    Say("Downloaded the table of module " + program_.Running().state.FirmwareId);
}

void Tour::EditCell() {
    auto* grid = program_.Window().findChild<GridView*>();
    const auto index = grid->model()->index(kEdited.row - 1, kEdited.column - 1);
    const auto at = grid->visualRect(index).center();
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, at);
    Picture("cell-selected");
    robot_.Type("31.5");
    Picture("cell-editing");
    robot_.Press(Qt::Key_Return);
    auto& session = program_.Running();
    Check(session.table.Table().GetCell(CellAt(kEdited, session.sheet.Type())) == kAdvance,
          "the typed advance is in the table");
    Picture("cell-edited");
    Say("Changed one cell to 31.5 degrees");
}

// Two rows at the bottom, under full load, fall by a twentieth.
void Tour::ModifySelection() {
    auto* grid = program_.Window().findChild<GridView*>();
    const auto middle = [&](GridCell at) {
        return grid->visualRect(grid->model()->index(at.row - 1, at.column - 1)).center();
    };
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, middle({7, 8}));
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, Qt::ShiftModifier, middle({8, 12}));
    auto& session = program_.Running();
    const auto value = [&] { return session.table.Table().GetCell(CellAt({8, 12}, session.sheet.Type())); };
    const double before = value();
    robot_.ExpectInput("-5%");
    robot_.Press(Qt::Key_Menu);
    Picture("popup");
    robot_.ChooseFromPopup("mnuPopUpEdit3D", "mnuPopUpModify3D");
    Check(value() < before, "the modified cells have fallen");
    Picture("modified");
    Say("Lowered ten cells by 5 percent");
}

void Tour::SetParameters() {
    const auto& parameters = program_.Running().state.ModuleParameters;
    const int before = parameters.RPMLimit;
    robot_.Expect("parameters", [this](QWidget& dialog) {
        auto* slider = dialog.findChild<QSlider*>(QStringLiteral("sldRPMLimit"));
        Check(slider->isVisible(), "the module's fixed RPM limit is on");
        QTest::keyClick(slider, Qt::Key_PageUp);
        Picture("parameters");
        QTest::mouseClick(dialog.findChild<QPushButton*>(QStringLiteral("cmdOK")), Qt::LeftButton);
    });
    robot_.Choose("mnuEdit", "mnuEditModParams");
    Check(parameters.RPMLimit == before + 1000, "the RPM limit has risen by a page");
    Say("Raised the RPM limit to " + std::to_string(parameters.RPMLimit));
}

void Tour::SaveAndOpen() {
    const auto path = FromQt(TableFile(folder_));
    const auto saved = program_.Running().table.Table();
    robot_.ExpectFile(path);
    robot_.Choose("mnuFile", "mnuSaveTable");
    Check(QFile::exists(TableFile(folder_)), "the table file is on disk");
    Say("Saved " + path);

    robot_.ExpectBox("Save advance table before closing file?", "cmdNo");
    robot_.Choose("mnuFile", "mnuCloseTable");
    Picture("closed");
    robot_.ExpectFile(path);
    robot_.Choose("mnuFile", "mnuOpenTable");
    Check(program_.Running().table.Table() == saved, "the opened table is the saved one");
    Picture("opened");
    Say("Opened it again: every value is the same");
}

void Tour::Upload() {
    robot_.ExpectBox("Upload completed.", "cmdOK");
    PictureProgress("programming");
    robot_.Choose("mnuComm", "mnuUpload");

    // What the module holds now is what it gives back.
    robot_.ExpectBox("Save advance table before downloading?", "cmdNo");
    robot_.ExpectBox("Firmware ID: ", "cmdOK");
    robot_.Choose("mnuComm", "mnuDownload");
    auto& session = program_.Running();
    const auto value = session.table.Table().GetCell(CellAt(kEdited, session.sheet.Type()));
    Check(std::abs(value - kAdvance) < 0.1, "the module gives the changed advance back");
    Picture("read-back");
    Say("Uploaded, verified, and read back from the module");
}

void Tour::Print() {
    const auto chart = folder_.filePath(QStringLiteral("report-chart.pdf"));
    const auto table = folder_.filePath(QStringLiteral("report-table.pdf"));
    for (const auto& page : {chart, table})
        QFile::remove(page);
    robot_.ExpectInput("Guided tour");
    robot_.ExpectFile(FromQt(chart));
    robot_.ExpectFile(FromQt(table));
    robot_.Choose("mnuFile", "mnuPrintTable");
    Check(QFile::exists(chart) && QFile::exists(table), "both pages of the report are on disk");
    Say("Printed the report: " + FromQt(chart) + " and " + FromQt(table));
}

void Tour::Help() {
    robot_.Choose("mnuHelp", "mnuHelpContents");
    auto* help = program_.Window().findChild<HelpWindow*>();
    Check(help != nullptr && help->isVisible(), "the help is open beside the main window");
    if (help == nullptr) return;
    PictureOf(*help, "help");
    QTest::keyClick(help, Qt::Key_Escape);
    Check(!help->isVisible(), "Escape closes the help");
    Say("Opened the help at its contents");
}

void Tour::About() {
    robot_.ExpectBox(program_.Running().state.BrandingLines.front(), "cmdOK");
    robot_.Choose("mnuHelp", "mnuAbout");
}

void Tour::Leave() {
    robot_.ExpectBox("Save advance table before exiting?", "cmdNo");
    robot_.Choose("mnuFile", "mnuExit");
    Check(!program_.Window().isVisible(), "the program has ended");
    Say("Left the program");
}

void Tour::Say(const std::string& line) const {
    std::printf("%s\n", line.c_str());
    std::fflush(stdout);
}

void Tour::Picture(const char* name) {
    QApplication::processEvents();
    Save(robot_.Picture(), name);
}

void Tour::PictureOf(QWidget& window, const char* name) {
    QApplication::processEvents();
    Save(window.grab().toImage(), name);
}

void Tour::Save(const QImage& picture, const char* name) {
    const auto file =
        QStringLiteral("%1-%2.png").arg(++pictures_, 2, 10, QLatin1Char('0')).arg(QLatin1String(name));
    Check(picture.save(folder_.filePath(file)), "a picture can be saved");
}

void Tour::PictureProgress(const char* name) {
    auto* bar = program_.Window().findChild<QProgressBar*>(QStringLiteral("prgProgress1"));
    auto* watch = new QTimer(bar);
    QObject::connect(watch, &QTimer::timeout, bar, [this, bar, watch, name] {
        if (!bar->isVisible() || bar->value() < 40) return;
        watch->stop();
        watch->deleteLater();
        Picture(name);
    });
    watch->start(20);
}

void Tour::Check(bool holds, const std::string& what) {
    if (!holds) robot_.Report("it does not hold that " + what);
}

}  // namespace rv52
