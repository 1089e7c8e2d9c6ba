#include "ProgramFixture.h"
#include "table/TableFile.h"
#include "table/ui/GridView.h"

#include <QFile>
#include <QGroupBox>
#include <QMenu>
#include <QProcess>
#include <QProgressBar>
#include <QTemporaryDir>

#include <csignal>
#include <fstream>

namespace rv52::test {

namespace {

// Whether a process has come to where a SIGTERM no longer just kills it.
bool WaitsForSignals(qint64 process) {
    QFile status(QStringLiteral("/proc/%1/status").arg(process));
    if (!status.open(QIODevice::ReadOnly)) return false;
    const auto caught = status.readAll().split('\n');
    for (const auto& line : caught)
        if (line.startsWith("SigCgt:"))
            return (line.mid(8).toULongLong(nullptr, 16) >> (SIGTERM - 1) & 1U) != 0;
    return false;
}

}  // namespace

// How the program ends when it is not its user who closes the window.
class EndsTest : public ProgramFixture {
 protected:
    static constexpr const char* kSaveQuestion = "Save advance table before exiting?";

    // Raised while the next box stands, which only the signal closes.
    void SignalAtNextBox(int signal = SIGTERM) {
        robot_->Expect("a box for the signal", [=, this](QWidget& box) {
            Raise(signal);
            EXPECT_TRUE(QTest::qWaitFor([&box] { return !box.isVisible(); }));
        });
    }
    void Raise(int signal) {
        if (State().TableShown) robot_->ExpectBox(kSaveQuestion, "cmdNo");
        std::raise(signal);
    }
    // Raised once the panel shows this caption.
    void SignalDuring(const char* caption, int signal = SIGTERM) {
        auto* panel = &Part<QGroupBox>("fraProgress1");
        auto* watch = new QTimer(panel);
        QObject::connect(watch, &QTimer::timeout, panel, [=] {
            if (!panel->isVisible() || panel->title() != QLatin1String(caption)) return;
            watch->deleteLater();
            std::raise(signal);
        });
        watch->start(5);
    }
    void ExpectEnd() {
        EXPECT_TRUE(QTest::qWaitFor([this] { return !Window().isVisible(); }));
        EXPECT_TRUE(robot_->Done());
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
        EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
    }
};

TEST_F(EndsTest, ASignalClosesWhatStandsAndRunsTheExitSequence) {
    const auto popUp = [this](QMenu& menu) {
        menu.popup(Window().mapToGlobal(QPoint(60, 60)));
        ASSERT_TRUE(menu.isVisible());
        Raise(SIGTERM);
    };
    const auto atBox = [this](const char* menu, const char* item, int signal) {
        SignalAtNextBox(signal);
        robot_->Choose(menu, item);
    };
    const auto atRefusal = [this] {
        auto& grid = Part<GridView>("VSFlexGrid1");
        Click(*grid.viewport(), grid.visualRect(grid.model()->index(1, 2)).center());
        robot_->Type("99");
        SignalAtNextBox();
        robot_->Press(Qt::Key_Return);
    };
    const auto closedTerminal = [this] {
        Raise(SIGHUP);
        std::raise(SIGHUP);
        QTest::qWait(1);
        std::raise(SIGHUP);
    };
    const std::tuple<const char*, bool, Act> moments[] = {
        {"idle", true, [&] { Raise(SIGTERM); }},
        {"idle, the terminal closed", true, closedTerminal},
        {"idle, no table", false, [&] { Raise(SIGINT); }},
        {"a message", false, [&] { atBox("mnuHelp", "mnuAbout", SIGTERM); }},
        {"a question", true, [&] { atBox("mnuFile", "mnuCloseTable", SIGINT); }},
        {"a file dialog", false, [&] { atBox("mnuFile", "mnuOpenTable", SIGHUP); }},
        {"a dialog", true, [&] { atBox("mnuEdit", "mnuEditModParams", SIGTERM); }},
        {"a menu", false, [&] { popUp(Part<QMenu>("mnuFile")); }},
        {"the grid's menu", true, [&] { popUp(Part<QMenu>("mnuPopUpEdit3D")); }},
        {"a refused cell", true, atRefusal},
    };
    for (const auto& [name, table, signal] : moments) {
        SCOPED_TRACE(name);
        program_.reset();
        Start();
        if (table) ShowAs(Running(), FlatTable(TableType::RACE, 30));
        signal();
        ExpectEnd();
    }
}

TEST_F(EndsTest, ASignalWaitsForProgrammingAndItsVerifyAndEndsARead) {
    Simulate();
    Download();
    SignalDuring("Programming EEPROM");
    SignalDuring("Verifying EEPROM");  // the second one, as programming takes more than a second
    robot_->ExpectBox("Upload completed.", "cmdOK");
    robot_->ExpectBox(kSaveQuestion, "cmdCancel");
    robot_->Choose("mnuComm", "mnuUpload");
    EXPECT_TRUE(Window().isVisible());

    robot_->ExpectBox("Save advance table before downloading?", "cmdNo");
    robot_->ExpectBox("Firmware ID: ", "cmdOK");
    SignalDuring("Reading EEPROM");
    robot_->Choose("mnuComm", "mnuDownload");
    ExpectEnd();
}

TEST_F(EndsTest, ASignalAtTheVinPromptWritesNothing) {
    Simulate();
    robot_->ExpectBox("Firmware ID: ", "cmdOK");
    SignalAtNextBox();
    robot_->Choose("mnuEdit", "mnuEditVIN");
    ExpectEnd();
}

TEST_F(EndsTest, LoggingOutAsksAndWaitsForACommand) {
    Start();
    ShowAs(Running(), FlatTable(TableType::RACE, 30));
    robot_->ExpectBox(kSaveQuestion, "cmdCancel");
    EXPECT_FALSE(program_->End().MayLogOut());
    robot_->Expect("the about box", [this](QWidget&) { EXPECT_FALSE(program_->End().MayLogOut()); });
    robot_->ExpectBox(kSaveQuestion, "cmdCancel");
    robot_->Choose("mnuHelp", "mnuAbout");
    EXPECT_TRUE(robot_->Done() && Window().isVisible());
    robot_->ExpectBox(kSaveQuestion, "cmdNo");
    EXPECT_TRUE(program_->End().MayLogOut());
    ExpectEnd();
}

// The program itself, seen from outside.
TEST(EndsFromOutsideTest, ASecondSignalEndsTheProgramWithoutAnAnswer) {
    const QTemporaryDir folder;
    const auto table = folder.filePath(QStringLiteral("street.tbl"));
    std::ofstream(FromQt(table)) << FormatTableFile(FlatTable(TableType::RACE, 20), {});
    QProcess program;
    program.start(QStringLiteral(RV52_PROGRAM), {table});
    ASSERT_TRUE(QTest::qWaitFor([&] { return WaitsForSignals(program.processId()); }, 20000));
    QTest::qWait(200);  // the table is opened once the window stands
    const auto process = static_cast<pid_t>(program.processId());
    kill(process, SIGTERM);
    EXPECT_FALSE(program.waitForFinished(1100)) << "it asks";
    kill(process, SIGTERM);
    ASSERT_TRUE(program.waitForFinished());
    EXPECT_EQ(program.exitStatus(), QProcess::CrashExit);
    EXPECT_EQ(program.exitCode(), SIGTERM);
}

}  // namespace rv52::test
