#include "app/DesktopProgram.h"
#include "app/HelpWindow.h"
#include "platform/qt/Text.h"
#include "tour/Robot.h"

#include <QApplication>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>

#include <gtest/gtest.h>

namespace rv52 {
namespace {

// The whole program, on a system without printers.
class FaceTest : public testing::Test {
 protected:
    FaceTest() {
        qputenv("CUPS_SERVER", "/nowhere/cups.sock");
        CommandLine options;
        options.simulate = TableType::RACE;
        program_ = std::make_unique<DesktopProgram>(options);
    }

    void Start() {
        ASSERT_TRUE(program_->Start(std::chrono::milliseconds(40)));
        robot_ = std::make_unique<Robot>(Window());
        Window().activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&Window()));
    }

    void TearDown() override {
        if (!robot_) return;
        EXPECT_TRUE(robot_->Done());
        for (const auto& problem : robot_->Problems())
            ADD_FAILURE() << problem;
    }

    MainWindow& Window() { return program_->Window(); }

    std::unique_ptr<DesktopProgram> program_;
    std::unique_ptr<Robot> robot_;
};

TEST_F(FaceTest, ShowsNothingOfTheMainWindowBeforeTheSplashIsGone) {
    const auto folder = QDir::currentPath();
    QDir::setCurrent(QDir::rootPath());
    bool seen = false;
    QTimer::singleShot(20, qApp, [&] {
        seen = true;
        ASSERT_NE(QApplication::activeModalWidget(), nullptr);
        EXPECT_EQ(QApplication::activeModalWidget()->objectName(), QStringLiteral("frmCorvane_Splash"));
        EXPECT_EQ(QCoreApplication::applicationName(), QStringLiteral("Corvane_RV52_Splash"));
        EXPECT_FALSE(Window().isVisible());
        EXPECT_TRUE(Window().windowTitle().isEmpty());
        EXPECT_EQ(QDir::currentPath(), QDir::rootPath());
    });
    Start();
    EXPECT_TRUE(seen);
    EXPECT_EQ(QCoreApplication::applicationName(), QStringLiteral("Corvane_RV52_Main"));
    EXPECT_EQ(Window().windowTitle(), QStringLiteral("Emberline Corvane RV52 Version 8.1"));
    EXPECT_EQ(QDir::currentPath(), QCoreApplication::applicationDirPath());
    EXPECT_FALSE(QApplication::windowIcon().isNull());
    QDir::setCurrent(folder);
}

TEST_F(FaceTest, OpensTheHelpOnceBesideTheMainWindow) {
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
    EXPECT_FALSE(help->isVisible());
    EXPECT_FALSE(Window().isVisible());
}

TEST_F(FaceTest, PrintsTwoDocumentsWhereThereIsNoPrinter) {
    Start();
    robot_->ExpectBox("Firmware ID: ", "cmdOK");
    robot_->Choose("mnuComm", "mnuDownload");
    const QTemporaryDir folder;
    const auto chart = folder.filePath(QStringLiteral("chart.pdf"));
    const auto table = folder.filePath(QStringLiteral("table.pdf"));
    robot_->ExpectInput("No. 7");
    robot_->ExpectFile(FromQt(chart));
    robot_->ExpectFile(FromQt(table));
    robot_->Choose("mnuFile", "mnuPrintTable");

    const auto read = [](const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    };
    EXPECT_TRUE(read(table).startsWith("%PDF-"));
    EXPECT_FALSE(read(table).contains("/Subtype /Image"));
    // The surface is vectors, and more of them than a page of text.
    EXPECT_TRUE(read(chart).startsWith("%PDF-"));
    EXPECT_FALSE(read(chart).contains("/Subtype /Image"));
    EXPECT_GT(read(chart).size(), read(table).size());
}

}  // namespace
}  // namespace rv52
