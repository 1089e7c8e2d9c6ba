#include "tour/Tour.h"

#include "app/ui/DesktopProgram.h"
#include "app/ui/HelpWindow.h"
#include "platform/qt/QtText.h"
#include "table/ui/GridView.h"

#include <QApplication>
#include <QFile>
#include <QLineEdit>
#include <QProcess>
#include <QProgressBar>
#include <QTest>

#include <cmath>
#include <cstdio>

namespace rv52 {

namespace {

constexpr const char* kVin = "1CVRV52A0SM000052";
constexpr const char* kSplash = "splash";
constexpr int kSplashPatience = 10000;  // ms

}  // namespace

Tour::Tour(DesktopProgram& program, const QDir& folder)
    : program_(program), robot_(program.Window()), album_(folder) {
    // Given a moment, the windows paint as a user sees them.
    robot_.onBox = [this](const std::string& what) {
        if (what != "file dialog" && what != kSplash) Picture(what);
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
    DragPoint();
    UndoAndRedo();
    SetParameters();
    SaveAndOpen();
    Upload();
    VerifyFromShell();
    EditVin();
    Print();
    MakeNewTable();
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
    album_.Say("Downloaded the table of module " + program_.Running().state.FirmwareId);
}

void Tour::SaveAndOpen() {
    const auto path = album_.Path("tour.tbl");
    const auto saved = program_.Running().table.Table();
    robot_.ExpectFile(path);
    robot_.Choose("mnuFile", "mnuSaveTable");
    Check(QFile::exists(ToQt(path)), "the table file is on disk");
    album_.Say("Saved " + path);

    robot_.ExpectBox("Save advance table before closing file?", "cmdNo");
    robot_.Choose("mnuFile", "mnuCloseTable");
    Picture("closed");
    robot_.ExpectFile(path);
    robot_.Choose("mnuFile", "mnuOpenTable");
    Check(program_.Running().table.Table() == saved, "the opened table is the saved one");
    Picture("opened");
    album_.Say("Opened it again: every value is the same");
}

void Tour::Upload() {
    robot_.ExpectBox("Upload completed.", "cmdOK");
    PictureProgress("programming");
    robot_.Choose("mnuComm", "mnuUpload");

    // What the module holds now is what it gives back.
    robot_.ExpectBox("Save advance table before downloading?", "cmdNo");
    robot_.ExpectBox("Firmware ID: ", "cmdOK");
    robot_.Choose("mnuComm", "mnuDownload");
    Check(std::abs(Degrees(kEdited) - kAdvance) < 0.1, "the module gives the changed advance back");
    Picture("read-back");
    album_.Say("Uploaded, verified, and read back from the module");
}

// What the window has programmed is what the tool for the shell finds.
void Tour::VerifyFromShell() {
    const auto& session = program_.Running();
    QProcess tool;
    tool.start(QCoreApplication::applicationDirPath() + QStringLiteral("/rv52"),
               {QStringLiteral("--device"), ToQt(program_.Devices().DeviceOf(session.state.CommPort)),
                QStringLiteral("verify"), ToQt(album_.Path("tour.tbl"))});
    Check(tool.waitForFinished() && tool.exitStatus() == QProcess::NormalExit && tool.exitCode() == 0,
          "rv52 verifies the module with the saved file");
    album_.Say("Verified it once more with rv52");
}

void Tour::EditVin() {
    robot_.ExpectBox("Firmware ID: ", "cmdOK");
    robot_.ExpectInput(kVin, "vin");
    robot_.ExpectBox(std::string("Verify new VIN is: ") + kVin, "cmdOK");
    robot_.ExpectBox("Upload completed.", "cmdOK");
    robot_.Choose("mnuEdit", "mnuEditVIN");

    // The box then offers what was read out of the module; leaving it writes nothing.
    robot_.ExpectBox("Firmware ID: ", "cmdOK");
    robot_.Expect("vin-read-back", [this](QWidget& box) {
        const auto* answer = box.findChild<QLineEdit*>(QStringLiteral("txtAnswer"));
        Check(answer != nullptr && FromQt(answer->text()) == kVin, "the module gives the new VIN back");
        QTest::keyClick(&box, Qt::Key_Escape);
    });
    robot_.Choose("mnuEdit", "mnuEditVIN");
    album_.Say(std::string("Wrote the VIN ") + kVin + ", verified, and read it back");
}

void Tour::Print() {
    const auto chart = album_.Path("report-chart.pdf");
    const auto table = album_.Path("report-table.pdf");
    robot_.ExpectInput("Guided tour", "comment");
    robot_.ExpectFile(chart);
    robot_.ExpectFile(table);
    robot_.Choose("mnuFile", "mnuPrintTable");
    Check(QFile::exists(ToQt(table)), "the page of the table is on disk");
    // The surface is drawn in lines, and in more of them than a page of text.
    Check(QFile(ToQt(chart)).size() > QFile(ToQt(table)).size(), "the page of the chart holds the surface");
    album_.Say("Printed the report: " + chart + " and " + table);
}

void Tour::Help() {
    robot_.Choose("mnuHelp", "mnuHelpContents");
    auto* help = program_.Window().findChild<HelpWindow*>();
    Check(help != nullptr && help->isVisible(), "the help is open beside the main window");
    if (help == nullptr) return;
    PictureOf(*help, "help");
    QTest::keyClick(help, Qt::Key_Escape);
    Check(!help->isVisible(), "Escape closes the help");
    album_.Say("Opened the help at its contents");
}

void Tour::About() {
    robot_.ExpectBox(program_.Running().state.BrandingLines.front(), "cmdOK");
    robot_.Choose("mnuHelp", "mnuAbout");
}

void Tour::Leave() {
    robot_.ExpectBox("Save advance table before exiting?", "cmdNo");
    robot_.Choose("mnuFile", "mnuExit");
    Check(!program_.Window().isVisible(), "the program has ended");
    album_.Say("Left the program");
}

QPoint Tour::PlaceOf(GridCell at) const {
    const auto* grid = program_.Window().findChild<GridView*>();
    return grid->visualRect(grid->model()->index(at.row - 1, at.column - 1)).center();
}

double Tour::Degrees(GridCell at) const {
    const auto& table = program_.Running().table.Table();
    return table.GetCell(CellAt(at, table.Type()));
}

void Tour::Picture(const std::string& name) {
    QApplication::processEvents();
    Check(album_.Add(robot_.Picture(), name), "a picture can be saved");
}

void Tour::PictureOf(QWidget& window, const char* name) {
    QApplication::processEvents();
    Check(album_.Add(window.grab().toImage(), name), "a picture can be saved");
}

// At that very value, and not some events later: the picture is the same on every machine.
void Tour::PictureProgress(const char* name) {
    auto* bar = program_.Window().findChild<QProgressBar*>(QStringLiteral("prgProgress1"));
    auto* once = new QObject(bar);
    QObject::connect(bar, &QProgressBar::valueChanged, once, [this, once, name](int percent) {
        if (percent < 40) return;
        Check(album_.Add(robot_.Picture(), name), "a picture can be saved");
        delete once;
    });
}

void Tour::Check(bool holds, const std::string& what) {
    if (!holds) robot_.Report("it does not hold that " + what);
}

}  // namespace rv52
