#include "app/DesktopProgram.h"
#include "chart/ChartView.h"
#include "platform/qt/Text.h"
#include "table/GridView.h"
#include "tour/Robot.h"

#include <QAction>
#include <QComboBox>
#include <QFile>
#include <QGroupBox>
#include <QMenu>
#include <QMenuBar>
#include <QProgressBar>
#include <QPushButton>
#include <QStandardPaths>
#include <QTest>

#include <gtest/gtest.h>

namespace rv52 {
namespace {

// The whole program in its real windows, with a simulated module on a real serial device.
class MainWindowTest : public testing::Test {
 protected:
    void Start(TableType module = TableType::RACE) {
        CommandLine options;
        options.simulate = module;
        program_ = std::make_unique<DesktopProgram>(options);
        ASSERT_TRUE(program_->Start(std::chrono::milliseconds(1)));
        robot_ = std::make_unique<Robot>(program_->Window());
        program_->Window().activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&program_->Window()));
    }

    void TearDown() override {
        if (!robot_) return;
        EXPECT_TRUE(robot_->Done());
        for (const auto& problem : robot_->Problems())
            ADD_FAILURE() << problem;
    }

    void Download() {
        robot_->ExpectBox("Firmware ID: ", "cmdOK");
        robot_->Choose("mnuComm", "mnuDownload");
        ASSERT_TRUE(State().TableShown);
    }

    // Does something once the progress panel shows this caption and at least this percentage.
    void Meanwhile(const char* caption, int percent, const std::function<void()>& act) {
        auto* panel = Find<QGroupBox>("fraProgress1");
        auto* bar = Find<QProgressBar>("prgProgress1");
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

    template <class Widget>
    Widget* Find(const char* name) {
        auto* found = Window().findChild<Widget*>(QString::fromLatin1(name));
        EXPECT_NE(found, nullptr) << name;
        return found;
    }

    MainWindow& Window() { return program_->Window(); }
    AppState& State() { return program_->Running().state; }
    std::string Caption() { return FromQt(Window().windowTitle()); }

    std::unique_ptr<DesktopProgram> program_;
    std::unique_ptr<Robot> robot_;
};

TEST_F(MainWindowTest, OpensAtItsDesignSizeUnderTheBrandWithoutATable) {
    Start();
    EXPECT_EQ(Caption(), "Emberline Corvane RV52 Version 8.1");
    EXPECT_EQ(Window().centralWidget()->size(), QSize(602, 501));
    EXPECT_FALSE(Find<QWidget>("Chart3D1")->isVisible());
    EXPECT_FALSE(Find<QWidget>("VSFlexGrid1")->isVisible());
    EXPECT_FALSE(Find<QWidget>("fraProgress1")->isVisible());
    EXPECT_FALSE(Find<QWidget>("fraPortSelect")->isVisible());
}

TEST_F(MainWindowTest, HasEveryMenuItemUnderItsNameAlwaysEnabled) {
    Start();
    const std::vector<std::vector<std::pair<const char*, const char*>>> menus{
        {{"mnuFile", "&File"},
         {"mnuNewTable", "&New Table"},
         {"mnuOpenTable", "&Open Table"},
         {"mnuCloseTable", "&Close Table"},
         {"mnuSep1", ""},
         {"mnuSaveTable", "&Save Table"},
         {"mnuSep2", ""},
         {"mnuPrintTable", "&Print Table"},
         {"mnuPrintSetup", "Print Set&up..."},
         {"mnuSep3", ""},
         {"mnuExit", "E&xit"}},
        {{"mnuEdit", "&Edit"},
         {"mnuEditModParams", "Edit &Module Parameters"},
         {"mnuEditVIN", "Edit RV52A VIN"}},
        {{"mnuComm", "&Communications"},
         {"mnuDownload", "&Download From EEPROM"},
         {"mnuUpload", "&Upload To EEPROM"},
         {"mnuPortSetup", "&Port Setup"}},
        {{"mnuHelp", "&Help"}, {"mnuHelpContents", "&Contents"}, {"mnuAbout", "&About..."}}};
    const auto bar = Window().menuBar()->actions();
    ASSERT_EQ(static_cast<std::size_t>(bar.size()), menus.size());
    for (std::size_t m = 0; m < menus.size(); ++m) {
        const auto* menu = bar[static_cast<qsizetype>(m)]->menu();
        EXPECT_EQ(FromQt(menu->objectName()), menus[m][0].first);
        EXPECT_EQ(FromQt(menu->title()), menus[m][0].second);
        ASSERT_EQ(static_cast<std::size_t>(menu->actions().size()), menus[m].size() - 1);
        for (std::size_t i = 1; i < menus[m].size(); ++i) {
            const auto* action = menu->actions()[static_cast<qsizetype>(i - 1)];
            EXPECT_EQ(FromQt(action->objectName()), menus[m][i].first);
            EXPECT_EQ(FromQt(action->text()), menus[m][i].second);
            EXPECT_EQ(action->isSeparator(), menus[m][i].second[0] == '\0');
            EXPECT_TRUE(action->isEnabled());
        }
    }
}

TEST_F(MainWindowTest, LaysOutChartAndGridByTheWindowsSize) {
    Start();
    Download();
    EXPECT_EQ(Find<QWidget>("Chart3D1")->geometry(), QRect(0, 0, 602, 351));
    EXPECT_EQ(Find<QWidget>("VSFlexGrid1")->geometry(), QRect(0, 351, 592, 102));
    State().LineErrorCount = 2;
    Window().resize(Window().size() + QSize(400, 300));
    QTest::qWait(1);
    EXPECT_EQ(Find<QWidget>("Chart3D1")->geometry(), QRect(0, 0, 1002, 561));
    EXPECT_EQ(Find<QWidget>("VSFlexGrid1")->width(), 992);
    EXPECT_EQ(State().LineErrorCount, 0);
    Window().resize(20, 20);
    QTest::qWait(1);
    EXPECT_GE(Find<QWidget>("VSFlexGrid1")->height(), 0);
}

TEST_F(MainWindowTest, StoresThePickedPortAtOnceAndNothingElse) {
    Start();
    robot_->Choose("mnuComm", "mnuPortSetup");
    auto* panel = Find<QWidget>("fraPortSelect");
    EXPECT_TRUE(panel->isVisible());
    EXPECT_EQ(panel->geometry(), QRect(80, 96, 177, 129));
    auto* list = Find<QComboBox>("cboPort");
    ASSERT_EQ(list->count(), 255);
    EXPECT_EQ(list->itemText(254), QStringLiteral("Com255"));
    EXPECT_EQ(list->currentIndex(), 0);
    list->setFocus();
    for (int press = 0; press < 11; ++press)
        QTest::keyClick(list, Qt::Key_Down);
    EXPECT_EQ(State().CommPort, 12);
    QFile store(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
                QStringLiteral("/Corvane_RV52_Main.conf"));
    ASSERT_TRUE(store.open(QIODevice::ReadOnly));
    EXPECT_EQ(store.readAll().trimmed().toStdString(), "[Properties]\nCommPort=12");
    QTest::mouseClick(Find<QPushButton>("cmdPortSelectOK"), Qt::LeftButton);
    EXPECT_FALSE(panel->isVisible());
    program_->Running().settings.Set("Properties", "CommPort", "1");
}

TEST_F(MainWindowTest, DownloadsEditsAndUploadsOverARealSerialDevice) {
    for (const auto type : {TableType::RACE, TableType::EX}) {
        Start(type);
        Download();
        EXPECT_EQ(Caption(), "Corvane RV52 Version 8.1 - Downloaded Data");
        EXPECT_EQ(State().TableType, type);
        EXPECT_TRUE(Find<QWidget>("Chart3D1")->isVisible());
        EXPECT_TRUE(Find<QWidget>("VSFlexGrid1")->isVisible());
        EXPECT_FALSE(Find<QWidget>("fraProgress1")->isVisible());
        program_->Running().table.SetCell({5, 5}, 17.6);
        robot_->ExpectBox("Upload completed.", "cmdOK");
        robot_->Choose("mnuComm", "mnuUpload");
        robot_->ExpectBox("Save advance table before downloading?", "cmdNo");
        Download();
        EXPECT_NEAR(program_->Running().table.Table().GetCell({5, 5}), 17.6, 1e-9);
        robot_.reset();
        program_.reset();
    }
}

TEST_F(MainWindowTest, EscapeEndsAReadAndNoSecondCommandStartsDuringIt) {
    Start();
    Meanwhile("Reading EEPROM", 20, [this] {
        robot_->Choose("mnuHelp", "mnuAbout");  // no box: the gate is closed
        QTest::keyClick(&Window(), Qt::Key_Escape);
    });
    robot_->ExpectBox("Firmware ID: ", "cmdOK");
    robot_->ExpectBox("Download failed.", "cmdOK");
    robot_->Choose("mnuComm", "mnuDownload");
    EXPECT_FALSE(State().TableShown);
    EXPECT_EQ(Caption(), "Corvane RV52 Version 8.1 - Data Buffer Empty");
    EXPECT_FALSE(program_->Running().line.IsOpen());
}

TEST_F(MainWindowTest, AnEscapeHeldDownSinceItClosedABoxEndsNothing) {
    Start();
    Meanwhile("Reading EEPROM", 10, [this] {
        QKeyEvent held(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier, QString(), true);
        QApplication::sendEvent(&Window(), &held);
    });
    Download();
}

TEST_F(MainWindowTest, EscapeDuringProgrammingChangesNothingAndClosingWaits) {
    Start();
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

TEST_F(MainWindowTest, ClosingDuringAReadEndsItAndThenTheProgram) {
    Start();
    Meanwhile("Reading EEPROM", 20, [this] { Window().close(); });
    robot_->ExpectBox("Firmware ID: ", "cmdOK");
    robot_->ExpectBox("Download failed.", "cmdOK");
    robot_->Choose("mnuComm", "mnuDownload");
    EXPECT_FALSE(Window().isVisible());
}

TEST_F(MainWindowTest, ExitCancelledKeepsWindowAndTable) {
    Start();
    Download();
    robot_->ExpectBox("Save advance table before exiting?", "cmdCancel");
    Window().close();
    EXPECT_TRUE(Window().isVisible());
    EXPECT_TRUE(State().TableShown);
}

}  // namespace
}  // namespace rv52
