#include "ProgramFixture.h"
#include "app/ui/HelpWindow.h"
#include "support/TemporaryFolder.h"
#include "table/TableFile.h"
#include "table/ui/GridView.h"

#include <QComboBox>
#include <QDir>
#include <QGroupBox>
#include <QLabel>
#include <QProgressBar>
#include <QWindow>

namespace rv52::test {

class MainWindowTest : public ProgramFixture {
 protected:
    // Does something once the progress panel shows this caption and at least this percentage.
    void Meanwhile(const char* caption, int percent, const Act& act) {
        auto* panel = &Part<QGroupBox>("fraProgress1");
        const auto* bar = &Part<QProgressBar>("prgProgress1");
        auto* watch = new QTimer(panel);
        QObject::connect(watch, &QTimer::timeout, panel, [=] {
            if (!panel->isVisible() || panel->title() != QLatin1String(caption) || bar->value() < percent)
                return;
            watch->stop();
            watch->deleteLater();
            act();
        });
        watch->start(5);
    }
    void DownloadInVain(bool told = true) {
        robot_->ExpectBox("Firmware ID: ", "cmdOK");
        if (told) robot_->ExpectBox("Download failed.", "cmdOK");
        robot_->Choose("mnuComm", "mnuDownload");
        EXPECT_FALSE(State().TableShown || Running().line.IsOpen());
    }
    GridView& Grid() { return Part<GridView>("VSFlexGrid1"); }
    // Of a cell in the grid's second row.
    QPoint PlaceOf(int column) { return Grid().visualRect(Grid().model()->index(1, column - 1)).center(); }
    void TypeInCell(const char* text) {
        Click(*Grid().viewport(), PlaceOf(3));
        robot_->Type(text);
    }
    std::string CellText() { return Running().sheet.Text({GridRow(2), GridColumn(3)}); }
};

TEST_F(MainWindowTest, ShowsNothingBeforeTheSplashIsGoneAndThenNoTable) {
    QDir::setCurrent(QDir::rootPath());
    std::string seen;
    QTimer::singleShot(20, qApp, [&] {
        seen = FromQt(QApplication::activeModalWidget()->objectName() + QCoreApplication::applicationName());
        EXPECT_FALSE(Window().isVisible());
        EXPECT_EQ(QDir::currentPath(), QDir::rootPath());
    });
    Start({}, std::chrono::milliseconds(40));
    EXPECT_EQ(seen, "frmCorvane_SplashCorvane_RV52_Splash");
    EXPECT_EQ(QCoreApplication::applicationName(), QStringLiteral("Corvane_RV52_Main"));
    EXPECT_EQ(Caption(), "Emberline Corvane RV52 Version 8.1");
    EXPECT_EQ(QDir::currentPath(), QCoreApplication::applicationDirPath());
    EXPECT_FALSE(QApplication::windowIcon().isNull());
    EXPECT_EQ(Window().centralWidget()->size(), QSize(602, 501));
    for (const auto* hidden : {"Chart3D1", "VSFlexGrid1", "fraProgress1", "fraPortSelect"})
        EXPECT_FALSE(Part(hidden).isVisible()) << hidden;
}

// Nobody but the user is asked, once, and out of the painting.
TEST_F(MainWindowTest, AsksOnceAboutWhatCannotBePainted) {
    Start();
    struct Unpaintable : QWidget {
        using QWidget::QWidget;
        void paintEvent(QPaintEvent*) override { throw Failure("no colours"); }
    };
    Unpaintable patch(&Window());
    patch.resize(50, 50);
    robot_->ExpectBox("no colours", "cmdIgnore");
    patch.show();
    QTest::qWait(50);
    patch.repaint();
    QTest::qWait(50);
    EXPECT_TRUE(robot_->Done());
}

TEST_F(MainWindowTest, OpensTheTableOfTheCommandLineOnceTheWindowIsInItsPlace) {
    const TemporaryFolder folder;
    CommandLine options;
    options.devices = {{1, "/dev/rv52-cable"}};
    options.tableFile = (folder.Path() / "my [*] table 1.tbl").string();
    QtFiles().ReplaceWhole(options.tableFile, FormatTableFile(FlatTable(TableType::RACE, 27.75), {}));
    program_ = std::make_unique<DesktopProgram>(options);
    ASSERT_TRUE(program_->Start(std::chrono::milliseconds(1)));
    robot_ = std::make_unique<Robot>(Window());
    Window().hide();
    QTest::qWait(50);
    EXPECT_FALSE(State().TableShown);
    Activate(Window());
    ASSERT_TRUE(QTest::qWaitFor([this] { return State().TableShown; }));
    EXPECT_EQ(Window().windowHandle()->title(),
              QStringLiteral("Corvane RV52 Version 8.1 - my [*] table 1.tbl"));
    // The keys go to its grid at once, and the line below tells of the cell.
    const auto& line = Part<QLabel>("lblStatus");
    EXPECT_EQ(FromQt(line.text()), "Com1: /dev/rv52-cable");
    for (const auto key : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Right})
        Key(key);
    EXPECT_EQ(FromQt(line.text()), "RPM 500, MAP 18: 27.75°, limit 45°   ·   Com1: /dev/rv52-cable");
    EXPECT_TRUE(line.isVisible() && line.y() >= Grid().geometry().bottom());
}

TEST_F(MainWindowTest, StoresThePickedPortAtOnce) {
    Start();
    robot_->Choose("mnuComm", "mnuPortSetup");
    EXPECT_EQ(Part("fraPortSelect").geometry(), QRect(80, 96, 177, 129));
    const auto& list = Part<QComboBox>("cboPort");
    EXPECT_TRUE(list.hasFocus() && Window().testAttribute(Qt::WA_KeyboardFocusChange)) << "styles show it";
    for (int press = 0; press < 11; ++press)
        Key(Qt::Key_Down);
    EXPECT_EQ(State().CommPort, 12);
    EXPECT_EQ(Running().settings.Get("Properties", "CommPort", ""), "12");
    Click(Part("cmdPortSelectOK"));
    EXPECT_FALSE(Part("fraPortSelect").isVisible());
    for (const auto key : {Qt::Key_Return, Qt::Key_Escape}) {
        robot_->Choose("mnuComm", "mnuPortSetup");
        Activate(Window());
        EXPECT_TRUE(list.hasFocus());
        State().AbortRequested = false;
        Key(key);
        EXPECT_FALSE(Part("fraPortSelect").isVisible()) << key;
        EXPECT_EQ(State().AbortRequested, key == Qt::Key_Escape);
    }
    Running().settings.Set("Properties", "CommPort", "1");
}

TEST_F(MainWindowTest, ChartAndGridGrowWithIt) {
    Start();
    for (const auto& [growth, chart, grid] :
         {std::tuple(QSize(0, 0), QRect(0, 0, 602, 351), QRect(0, 351, 592, 102)),
          std::tuple(QSize(400, 300), QRect(0, 0, 1002, 561), QRect(0, 561, 992, 192))}) {
        Window().resize(Window().size() + growth);
        QTest::qWait(1);
        EXPECT_EQ(Part("Chart3D1").geometry(), chart);
        EXPECT_EQ(Grid().geometry(), grid);
    }
    Window().resize(20, 20);
    QTest::qWait(1);
    EXPECT_GE(Grid().height(), 0);
}

TEST_F(MainWindowTest, EscapeOrClosingEndsAReadAndNoSecondCommandStartsDuringIt) {
    Simulate();
    Meanwhile("Reading EEPROM", 20, [this] {
        robot_->Choose("mnuHelp", "mnuAbout");  // no box: the gate is closed
        QTest::keyClick(&Window(), Qt::Key_Escape);
    });
    DownloadInVain();
    EXPECT_EQ(Caption(), "Corvane RV52 Version 8.1 - Data Buffer Empty");
    // One held down since it closed a box ends nothing.
    Meanwhile("Reading EEPROM", 10, [this] {
        QKeyEvent held(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier, QString(), true);
        QApplication::sendEvent(&Window(), &held);
    });
    Download();
    robot_->ExpectBox("Save advance table before downloading?", "cmdNo");
    Meanwhile("Reading EEPROM", 20, [this] { Window().close(); });
    DownloadInVain(false);
    EXPECT_FALSE(Window().isVisible());
}

TEST_F(MainWindowTest, EscapeDuringProgrammingChangesNothingAndClosingWaits) {
    Simulate();
    Download();
    Meanwhile("Programming EEPROM", 20, [this] {
        QTest::keyClick(&Window(), Qt::Key_Escape);
        Window().resize(800, 700);
        Window().close();
        EXPECT_TRUE(Window().isVisible());
    });
    robot_->ExpectBox("Upload completed.", "cmdOK");
    robot_->ExpectBox("Save advance table before exiting?", "cmdNo");
    robot_->Choose("mnuComm", "mnuUpload");
    EXPECT_FALSE(Window().isVisible());
}

// From grid and chart alike; the keys of an open editor are its own, and what is under way is not at rest.
TEST_F(MainWindowTest, UndoesAndRedoesByKeysWhateverHasTheFocus) {
    Simulate();
    Download();
    const auto loaded = CellText();
    TypeInCell("12.34");
    robot_->Press(Qt::Key_Return);
    for (const auto* focus : {"VSFlexGrid1", "Chart3D1"}) {
        SCOPED_TRACE(focus);
        Part(focus).setFocus();
        for (const auto redo : {Qt::CTRL | Qt::Key_Y, Qt::CTRL | Qt::SHIFT | Qt::Key_Z}) {
            robot_->Press(Qt::Key_Z, Qt::ControlModifier);
            EXPECT_EQ(CellText(), loaded);
            EXPECT_EQ(FromQt(Part<QLabel>("lblStatus").text()).substr(0, 20), "Undone: Edit, 1 cell");
            robot_->Press(redo.key(), redo.keyboardModifiers());
            EXPECT_EQ(CellText(), "12.34");
        }
    }
    const auto keepsAll = [&] {
        for (const auto key : {Qt::Key_Z, Qt::Key_Y})
            robot_->Press(key, Qt::ControlModifier);
        EXPECT_EQ(CellText(), "12.34");
    };
    TypeInCell("9");
    keepsAll();
    EXPECT_TRUE(Grid().Edits()) << "the editor has taken back its letter, and stays";
    robot_->Press(Qt::Key_Escape);
    QTest::mousePress(Window().windowHandle(), Qt::LeftButton, {},
                      Grid().viewport()->mapTo(&Window(), PlaceOf(4)));
    keepsAll();
    QTest::mouseRelease(Window().windowHandle(), Qt::LeftButton);
    Meanwhile("Programming EEPROM", 20, keepsAll);
    robot_->ExpectBox("Upload completed.", "cmdOK");
    robot_->Choose("mnuComm", "mnuUpload");
    robot_->Press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(CellText(), loaded) << "an upload leaves the steps as they are";
}

TEST_F(MainWindowTest, OpensTheHelpOnceBesideIt) {
    Start();
    for (int times = 0; times < 2; ++times)
        robot_->Choose("mnuHelp", "mnuHelpContents");
    EXPECT_EQ(Window().findChildren<HelpWindow*>().size(), 1);
    EXPECT_TRUE(Part("frmHelp").isVisible());
    robot_->Choose("mnuFile", "mnuExit");
    EXPECT_FALSE(Part("frmHelp").isVisible() || Window().isVisible());
}

TEST_F(MainWindowTest, NoCommandStartsOnARefusedText) {
    Start();
    ShowAs(Running(), FlatTable(TableType::RACE, 30));
    TypeInCell("99");
    robot_->ExpectBox("Advance must be numeric value between zero and 45 degrees.", "cmdOK");
    robot_->Choose("mnuFile", "mnuCloseTable");
    EXPECT_TRUE(State().TableShown && robot_->Done());
    robot_->Type("12");
    robot_->ExpectBox("Save advance table before closing file?", "cmdNo");
    robot_->Choose("mnuFile", "mnuCloseTable");
    EXPECT_EQ(CellText(), "12");
    EXPECT_FALSE(State().TableShown);
}

}  // namespace rv52::test
