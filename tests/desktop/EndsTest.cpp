#include "ProgramFixture.h"
#include "app/RunCommand.h"
#include "module/commands/Upload.h"
#include "platform/qt/QtFiles.h"
#include "platform/qt/SimulatorProcess.h"
#include "support/ConnectedSession.h"
#include "support/DismissingUser.h"
#include "support/TemporaryFolder.h"
#include "support/WaitsForSignals.h"
#include "table/TableFile.h"
#include "table/ui/GridView.h"

#include <QGroupBox>
#include <QMenu>
#include <QMessageBox>
#include <QProcess>
#include <QProgressBar>

#include <csignal>
#include <fstream>
#include <unistd.h>

namespace rv52::test {

// How the program ends when it is not its user who closes the window.
class EndsTest : public ProgramFixture {
 protected:
    static constexpr const char* kSaveQuestion = "Save advance table before exiting?";

    void StartAnew(bool withTable = true) {
        program_.reset();
        Start();
        if (withTable) ShowAs(Running(), FlatTable(TableType::RACE, 30));
    }
    // Leaves the editor open on this text.
    void EditCell(const char* text) {
        auto& grid = Part<GridView>("VSFlexGrid1");
        Click(*grid.viewport(), grid.visualRect(grid.model()->index(1, 2)).center());
        robot_->Press(Qt::Key_F2);
        robot_->Press(Qt::Key_Delete);
        robot_->Type(text);
    }
    void Raise(int signal) {
        if (State().TableShown) robot_->ExpectBox(kSaveQuestion, "cmdNo");
        std::raise(signal);
    }
    // Raised while the next box stands, which only the signal closes.
    void SignalAtNextBox(int signal = SIGTERM) {
        robot_->Expect("a box for the signal", [=, this](QWidget& box) {
            Raise(signal);
            EXPECT_TRUE(QTest::qWaitFor([&box] { return !box.isVisible(); }));
        });
    }
    // Raised once the panel shows this caption.
    void SignalDuring(const char* caption) {
        auto* panel = &Part<QGroupBox>("fraProgress1");
        auto* watch = new QTimer(panel);
        QObject::connect(watch, &QTimer::timeout, panel, [=] {
            if (!panel->isVisible() || panel->title() != QLatin1String(caption)) return;
            watch->deleteLater();
            std::raise(SIGTERM);
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
    const auto popUp = [this](const char* name) {
        auto& menu = Part<QMenu>(name);
        menu.popup(Window().mapToGlobal(QPoint(60, 60)));
        ASSERT_TRUE(menu.isVisible());
        Raise(SIGTERM);
    };
    const auto atBox = [this](const char* menu, const char* item, int signal) {
        SignalAtNextBox(signal);
        robot_->Choose(menu, item);
    };
    const auto atRefusal = [this] {
        EditCell("99");
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
        {"a menu", false, [&] { popUp("mnuFile"); }},
        {"the grid's menu", true, [&] { popUp("mnuPopUpEdit3D"); }},
        {"a refused cell", true, atRefusal},
    };
    for (const auto& [name, table, signal] : moments) {
        SCOPED_TRACE(name);
        StartAnew(table);
        signal();
        ExpectEnd();
    }
}

// A value that is missing from the file just saved is a lost value.
TEST_F(EndsTest, LeavingTakesAnOpenEditThatIsGoodAndGivesUpAnyOther) {
    const std::pair<const char*, Act> ways[] = {
        {"closing the window", [&] { Window().close(); }},
        {"the menu", [&] { robot_->Choose("mnuFile", "mnuExit"); }},
        {"a signal", [&] { std::raise(SIGTERM); }},
    };
    for (const auto& [way, leave] : ways)
        for (const auto& [typed, kept] : {std::pair("12.34", "12.34"), {"99", "30.0"}, {"", "30.0"}}) {
            SCOPED_TRACE(std::string(way) + ", typed: " + typed);
            StartAnew();
            EditCell(typed);
            robot_->ExpectBox(kSaveQuestion, "cmdNo");
            leave();
            ExpectEnd();
            EXPECT_EQ(Running().sheet.Text({GridRow(2), GridColumn(3)}), kept);
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
    StartAnew();
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

// The X server is killed under a program at each of these moments; the program is this test's own once more.
TEST_F(EndsTest, LosingTheDisplayLeavesAModuleThatTheNextUploadPutsRight) {
    constexpr const char* kServer = "RV52_DISPLAY_SERVER";
    const auto table = FlatTable(TableType::RACE, 30);
    CommandLine options;
    if (qEnvironmentVariableIsSet(kServer)) {
        const auto moment = qgetenv("RV52_MOMENT");
        const auto killServer = [] { kill(qEnvironmentVariableIntValue(kServer), SIGKILL); };
        options.devices[1] = qgetenv("RV52_DEVICE").toStdString();
        Start(options);
        ShowAs(Running(), table);
        auto& bar = Part<QProgressBar>("prgProgress1");
        const auto& panel = Part<QGroupBox>("fraProgress1");
        QObject::connect(&bar, &QProgressBar::valueChanged, &bar, [&](int percent) {
            if (panel.title() == QLatin1String("Programming EEPROM") && percent > 40) killServer();
        });
        if (moment == "programming") robot_->Choose("mnuComm", "mnuUpload");
        killServer();
        if (moment == "saving")
            Running().files.ReplaceWhole(qgetenv("RV52_FILE").toStdString(), FormatTableFile(table, {}));
        QTest::qWait(10000);
        FAIL() << "the program goes on without a display";
    }
    const TemporaryFolder folder;
    const auto file = (folder.Path() / "saved.tbl").string();
    SimulatorProcess module;
    const auto device = module.Start("RACE");
    for (const std::string moment : {"idle", "saving", "programming"}) {
        SCOPED_TRACE(moment);
        QProcess server;
        server.start(QStringLiteral("Xvfb"), {QStringLiteral("-displayfd"), QStringLiteral("1")});
        ASSERT_TRUE(QTest::qWaitFor([&] { return server.canReadLine(); }, 10000));
        QStringList command;
        for (const auto& word :
             {std::string("QT_QPA_PLATFORM=xcb"), "DISPLAY=:" + server.readLine().trimmed().toStdString(),
              kServer + ("=" + std::to_string(server.processId())), "RV52_MOMENT=" + moment,
              "RV52_FILE=" + file, "RV52_DEVICE=" + device, FromQt(QCoreApplication::applicationFilePath()),
              std::string("--gtest_filter=*LosingTheDisplay*")})
            command << ToQt(word);
        QProcess program;
        program.setProcessChannelMode(QProcess::MergedChannels);
        program.start(QStringLiteral("env"), command);
        ASSERT_TRUE(program.waitForFinished(20000));
        EXPECT_TRUE(program.readAll().contains("X11 connection broke"));
        server.waitForFinished();
    }
    // What was being saved is there as a whole, and nothing beside it.
    EXPECT_EQ(QtFiles().ReadWhole(file), FormatTableFile(table, {}));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Path()), {}), 1);

    options.devices[1] = device;
    Start(options);
    TestSession test(Running().line);
    DismissingUser user;
    Session session(PortsOf(test.session, user, Running().line));
    ShowAs(session, table);
    RunCommand(session, mnuUpload_Click);
    // A byte that was begun takes the first byte of what comes next.
    if (user.told.front() == kTimeoutText) RunCommand(session, mnuUpload_Click);
    EXPECT_EQ(user.told.back(), kCompleted);
}

// The program itself, seen from outside.
class EndsFromOutsideTest : public testing::Test {
 protected:
    // With a table on screen, about which it asks at its end.
    void Launch(QStringList options = {}) {
        const auto table = (folder.Path() / "street.tbl").string();
        std::ofstream(table) << FormatTableFile(FlatTable(TableType::RACE, 20), {});
        program.setChildProcessModifier([] { setpgid(0, 0); });
        program.start(QStringLiteral(RV52_PROGRAM), options << ToQt(table));
        ASSERT_TRUE(QTest::qWaitFor([&] { return WaitsForSignals(program.processId()); }, 20000));
        QTest::qWait(200);  // the table is opened once the window stands
        process = static_cast<pid_t>(program.processId());
    }

    TemporaryFolder folder;
    QProcess program;
    pid_t process = 0;
};

TEST_F(EndsFromOutsideTest, TheTerminalsSignalsReachTheSimulatedModuleOnlyThroughTheProgram) {
    ASSERT_NO_FATAL_FAILURE(Launch({QStringLiteral("--simulate"), QStringLiteral("RACE")}));
    const auto number = std::to_string(process);
    pid_t simulator = 0;
    ASSERT_TRUE(std::ifstream("/proc/" + number + "/task/" + number + "/children") >> simulator);
    kill(-process, SIGINT);  // as Ctrl+C does
    EXPECT_FALSE(program.waitForFinished(1100)) << "it asks";
    EXPECT_EQ(kill(simulator, 0), 0) << "the module has to be there for what the answer brings";
    kill(-process, SIGKILL);
    ASSERT_TRUE(program.waitForFinished());
    EXPECT_TRUE(QTest::qWaitFor([&] { return kill(simulator, 0) != 0; })) << "it has nobody left to serve";
}

TEST_F(EndsFromOutsideTest, ASecondSignalEndsTheProgramWithoutAnAnswer) {
    ASSERT_NO_FATAL_FAILURE(Launch());
    kill(process, SIGTERM);
    EXPECT_FALSE(program.waitForFinished(1100)) << "it asks";
    kill(process, SIGTERM);
    ASSERT_TRUE(program.waitForFinished());
    EXPECT_EQ(program.exitStatus(), QProcess::CrashExit);
    EXPECT_EQ(program.exitCode(), SIGTERM);
}

TEST_F(EndsFromOutsideTest, ASimulatorThatDoesNotStartIsToldOfAndNothingStarts) {
    // An empty library is none that a program could start with.
    std::ofstream(folder.Path() / "libc.so.6").flush();
    const auto usual = qgetenv("LD_LIBRARY_PATH");
    qputenv("LD_LIBRARY_PATH", folder.Path().c_str());
    CommandLine options;
    options.simulate = TableType::RACE;
    DesktopProgram started(options);
    std::string told;
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, &look, [&] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (box == nullptr) return;
        told = FromQt(box->text());
        box->close();
    });
    look.start(5);
    const auto failure = FailureOf([&] { started.Start(std::chrono::milliseconds(1)); });
    EXPECT_EQ(told, failure);
    EXPECT_TRUE(told.starts_with("The simulated module cannot be started: ")) << told;
    EXPECT_NE(told.find("/libc.so.6"), std::string::npos) << told;
    EXPECT_FALSE(started.Window().isVisible());
    qputenv("LD_LIBRARY_PATH", usual);
}

}  // namespace rv52::test
