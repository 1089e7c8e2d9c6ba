#include "ProgramFixture.h"
#include "app/HelpWindow.h"

#include <QAction>
#include <QComboBox>
#include <QFile>
#include <QGroupBox>
#include <QMenu>
#include <QMenuBar>
#include <QProgressBar>
#include <QPushButton>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTreeWidget>
#include <QWindow>

namespace rv52::test {
namespace {

class MainWindowTest : public ProgramFixture {
 protected:
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
    void DownloadInVain() {
        robot_->ExpectBox("Firmware ID: ", "cmdOK");
        robot_->ExpectBox("Download failed.", "cmdOK");
        robot_->Choose("mnuComm", "mnuDownload");
        EXPECT_FALSE(State().TableShown || Running().line.IsOpen());
    }
};

TEST_F(MainWindowTest, ShowsNothingBeforeTheSplashIsGoneAndThenNoTable) {
    QDir::setCurrent(QDir::rootPath());
    bool seen = false;
    QTimer::singleShot(20, qApp, [&] {
        seen = true;
        ASSERT_NE(QApplication::activeModalWidget(), nullptr);
        EXPECT_EQ(QApplication::activeModalWidget()->objectName(), QStringLiteral("frmCorvane_Splash"));
        EXPECT_EQ(QCoreApplication::applicationName(), QStringLiteral("Corvane_RV52_Splash"));
        EXPECT_FALSE(Window().isVisible());
        EXPECT_EQ(Caption(), "");
        EXPECT_EQ(QDir::currentPath(), QDir::rootPath());
    });
    Start({}, std::chrono::milliseconds(40));
    EXPECT_TRUE(seen);
    EXPECT_EQ(QCoreApplication::applicationName(), QStringLiteral("Corvane_RV52_Main"));
    EXPECT_EQ(Caption(), "Emberline Corvane RV52 Version 8.1");
    EXPECT_EQ(QDir::currentPath(), QCoreApplication::applicationDirPath());
    EXPECT_FALSE(QApplication::windowIcon().isNull());
    EXPECT_EQ(Window().centralWidget()->size(), QSize(602, 501));
    for (const auto* hidden : {"Chart3D1", "VSFlexGrid1", "fraProgress1", "fraPortSelect"})
        EXPECT_FALSE(Shown(hidden)) << hidden;
    Window().SetCaption("Corvane RV52 - my [*] table.tbl");
    EXPECT_EQ(Window().windowHandle()->title(), QStringLiteral("Corvane RV52 - my [*] table.tbl"));
}

TEST_F(MainWindowTest, HasEveryMenuItemUnderItsNameAlwaysEnabled) {
    Start();
    std::string found;
    for (const auto* bar : Window().menuBar()->actions()) {
        found += FromQt(bar->menu()->objectName() + QLatin1Char('=') + bar->menu()->title()) + "\n";
        for (const auto* item : bar->menu()->actions()) {
            found +=
                FromQt(QStringLiteral("  ") + item->objectName() + QLatin1Char('=') + item->text()) + "\n";
            EXPECT_EQ(item->isSeparator(), item->text().isEmpty());
            EXPECT_TRUE(item->isEnabled());
        }
    }
    EXPECT_EQ(found, R"(mnuFile=&File
  mnuNewTable=&New Table
  mnuOpenTable=&Open Table
  mnuCloseTable=&Close Table
  mnuSep1=
  mnuSaveTable=&Save Table
  mnuSep2=
  mnuPrintTable=&Print Table
  mnuPrintSetup=Print Set&up...
  mnuSep3=
  mnuExit=E&xit
mnuEdit=&Edit
  mnuEditModParams=Edit &Module Parameters
  mnuEditVIN=Edit RV52A VIN
mnuComm=&Communications
  mnuDownload=&Download From EEPROM
  mnuUpload=&Upload To EEPROM
  mnuPortSetup=&Port Setup
mnuHelp=&Help
  mnuHelpContents=&Contents
  mnuAbout=&About...
)");
}

TEST_F(MainWindowTest, LaysOutChartAndGridByTheWindowsSize) {
    Simulate();
    Download();
    EXPECT_EQ(Find("Chart3D1")->geometry(), QRect(0, 0, 602, 351));
    EXPECT_EQ(Find("VSFlexGrid1")->geometry(), QRect(0, 351, 592, 102));
    Window().resize(Window().size() + QSize(400, 300));
    QTest::qWait(1);
    EXPECT_EQ(Find("Chart3D1")->geometry(), QRect(0, 0, 1002, 561));
    EXPECT_EQ(Find("VSFlexGrid1")->width(), 992);
    Window().resize(20, 20);
    QTest::qWait(1);
    EXPECT_GE(Find("VSFlexGrid1")->height(), 0);
}

TEST_F(MainWindowTest, StoresThePickedPortAtOnceAndNothingElse) {
    Start();
    robot_->Choose("mnuComm", "mnuPortSetup");
    EXPECT_TRUE(Shown("fraPortSelect"));
    EXPECT_EQ(Find("fraPortSelect")->geometry(), QRect(80, 96, 177, 129));
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
    QTest::mouseClick(Find("cmdPortSelectOK"), Qt::LeftButton);
    EXPECT_FALSE(Shown("fraPortSelect"));
    Running().settings.Set("Properties", "CommPort", "1");
}

TEST_F(MainWindowTest, DownloadsEditsAndUploadsOverARealSerialDevice) {
    for (const auto type : {TableType::RACE, TableType::EX}) {
        Simulate(type);
        Download();
        EXPECT_EQ(Caption(), "Corvane RV52 Version 8.1 - Downloaded Data");
        EXPECT_EQ(State().TableType, type);
        EXPECT_TRUE(Shown("Chart3D1") && Shown("VSFlexGrid1") && !Shown("fraProgress1"));
        Running().table.SetCell({5, 5}, 17.6);
        robot_->ExpectBox("Upload completed.", "cmdOK");
        robot_->Choose("mnuComm", "mnuUpload");
        robot_->ExpectBox("Save advance table before downloading?", "cmdNo");
        Download();
        EXPECT_NEAR(Running().table.Table().GetCell({5, 5}), 17.6, 1e-9);
    }
}

TEST_F(MainWindowTest, EscapeEndsAReadAndNoSecondCommandStartsDuringIt) {
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
}

TEST_F(MainWindowTest, EscapeDuringProgrammingChangesNothingAndClosingWaits) {
    Simulate();
    Download();
    robot_->ExpectBox("Save advance table before exiting?", "cmdCancel");
    Window().close();
    EXPECT_TRUE(Window().isVisible() && State().TableShown);
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
    Simulate();
    Meanwhile("Reading EEPROM", 20, [this] { Window().close(); });
    DownloadInVain();
    EXPECT_FALSE(Window().isVisible());
}

TEST_F(MainWindowTest, OpensTheHelpOnceBesideIt) {
    Start();
    robot_->Choose("mnuHelp", "mnuHelpContents");
    auto* help = Window().findChild<HelpWindow*>();
    ASSERT_NE(help, nullptr);
    EXPECT_TRUE(help->isVisible() && help->isWindow());
    auto* contents = help->findChild<QTreeWidget*>();
    contents->setCurrentItem(contents->topLevelItem(1));

    // The main window goes on working, and asking again shows the same window at its contents.
    robot_->ExpectBox("Emberline Corvane RV52 Version 8.10", "cmdOK");
    robot_->Choose("mnuHelp", "mnuAbout");
    robot_->Choose("mnuHelp", "mnuHelpContents");
    EXPECT_EQ(Window().findChildren<HelpWindow*>().size(), 1);
    EXPECT_EQ(contents->currentItem(), contents->topLevelItem(0));
    robot_->Choose("mnuFile", "mnuExit");
    EXPECT_FALSE(help->isVisible() || Window().isVisible());
}

TEST_F(MainWindowTest, PrintsTwoDocumentsWhereThereIsNoPrinter) {
    Simulate();
    Download();
    const QTemporaryDir folder;
    robot_->ExpectInput("No. 7");
    for (const auto* name : {"chart.pdf", "table.pdf"})
        robot_->ExpectFile(FromQt(folder.filePath(QLatin1String(name))));
    robot_->Choose("mnuFile", "mnuPrintTable");
    const auto sizeOf = [&](const char* name) {
        QFile file(folder.filePath(QLatin1String(name)));
        const auto pdf = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        EXPECT_TRUE(pdf.startsWith("%PDF-") && !pdf.contains("/Subtype /Image")) << name;
        return pdf.size();
    };
    // The surface is vectors, and more of them than a page of text.
    EXPECT_GT(sizeOf("chart.pdf"), sizeOf("table.pdf"));
}

}  // namespace
}  // namespace rv52::test
