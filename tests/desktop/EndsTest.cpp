#include "ProgramFixture.h"
#include "support/WaitsForSignals.h"
#include "table/TableFile.h"
#include "table/ui/GridView.h"

#include <QDir>
#include <QFile>
#include <QGroupBox>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QProcess>
#include <QProgressBar>
#include <QTemporaryDir>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <unistd.h>

namespace rv52::test {

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
            program_.reset();
            Start();
            ShowAs(Running(), FlatTable(TableType::RACE, 30));
            auto& grid = Part<GridView>("VSFlexGrid1");
            Click(*grid.viewport(), grid.visualRect(grid.model()->index(1, 2)).center());
            robot_->Press(Qt::Key_F2);
            robot_->Press(Qt::Key_Delete);
            robot_->Type(typed);
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

// The X server is killed under a program at each of these moments; the program is this test's own once more.
TEST_F(EndsTest, LosingTheDisplayLeavesAModuleThatTheNextUploadPutsRight) {
    constexpr const char* kServer = "RV52_DISPLAY_SERVER";
    const auto upload = [this] {
        ShowAs(Running(), FlatTable(TableType::RACE, 30));
        robot_->Choose("mnuComm", "mnuUpload");
    };
    CommandLine options;
    if (qEnvironmentVariableIsSet(kServer)) {
        const auto moment = qgetenv("RV52_MOMENT");
        const auto file = qgetenv("RV52_FILE").toStdString();
        const auto killServer = [] { kill(qEnvironmentVariableIntValue(kServer), SIGKILL); };
        options.devices[1] = qgetenv("RV52_DEVICE").toStdString();
        Start(options);
        auto& bar = Part<QProgressBar>("prgProgress1");
        QObject::connect(&bar, &QProgressBar::valueChanged, &bar, [&](int percent) {
            const auto* panel = qobject_cast<QGroupBox*>(bar.parentWidget());
            if (panel->title() == QLatin1String("Programming EEPROM") && percent > 40) killServer();
        });
        if (moment == "programming") upload();
        ShowAs(Running(), FlatTable(TableType::RACE, 30));
        killServer();
        if (moment == "saving")
            Running().files.ReplaceWhole(file, FormatTableFile(Running().table.Table(), {}));
        QTest::qWait(10000);
        FAIL() << "the program goes on without a display";
    }
    const QTemporaryDir folder;
    const auto file = folder.filePath(QStringLiteral("saved.tbl"));
    QProcess module;
    module.start(QCoreApplication::applicationDirPath() + QStringLiteral("/rv52_simulator"),
                 {QStringLiteral("--type"), QStringLiteral("RACE")});
    ASSERT_TRUE(QTest::qWaitFor([&] { return module.canReadLine(); }, 10000));
    const auto device = module.readLine().trimmed();
    for (const auto* moment : {"idle", "saving", "programming"}) {
        SCOPED_TRACE(moment);
        QProcess server;
        server.start(QStringLiteral("Xvfb"), {QStringLiteral("-displayfd"), QStringLiteral("1")});
        ASSERT_TRUE(QTest::qWaitFor([&] { return server.canReadLine(); }, 10000));
        QProcess program;
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
        environment.insert(QStringLiteral("DISPLAY"),
                           QLatin1Char(':') + QString::fromLatin1(server.readLine().trimmed()));
        environment.insert(QString::fromLatin1(kServer), QString::number(server.processId()));
        environment.insert(QStringLiteral("RV52_MOMENT"), QString::fromLatin1(moment));
        environment.insert(QStringLiteral("RV52_FILE"), file);
        environment.insert(QStringLiteral("RV52_DEVICE"), QString::fromLatin1(device));
        program.setProcessEnvironment(environment);
        program.setProcessChannelMode(QProcess::MergedChannels);
        program.start(QCoreApplication::applicationFilePath(),
                      {QStringLiteral("--gtest_filter=*LosingTheDisplay*")});
        ASSERT_TRUE(program.waitForFinished(20000));
        EXPECT_TRUE(program.readAll().contains("X11 connection broke"));
        server.waitForFinished();
    }
    // What was being saved is there as a whole, and nothing beside it.
    QFile saved(file);
    EXPECT_TRUE(saved.open(QIODevice::ReadOnly));
    EXPECT_EQ(saved.readAll().toStdString(), FormatTableFile(FlatTable(TableType::RACE, 30), {}));
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).size(),
              1);

    options.devices[1] = device.toStdString();
    Start(options);
    // A byte that was begun takes the first byte of what comes next.
    bool begun = false;
    robot_->Expect("the outcome", [&](QWidget& box) {
        const auto text = FromQt(Find<QLabel>(box, "qt_msgbox_label").text());
        begun = text.starts_with("RS-232 timeout");
        if (begun)
            robot_->ExpectBox("Firmware ID read failed - cannot upload.", "cmdOK");
        else
            EXPECT_EQ(text, "Upload completed.");
        QTest::mouseClick(&Find(box, begun ? "cmdAbort" : "cmdOK"), Qt::LeftButton);
    });
    upload();
    if (begun) robot_->ExpectBox("Upload completed.", "cmdOK");
    if (begun) upload();
    EXPECT_TRUE(robot_->Done());
    module.terminate();
    module.waitForFinished();
}

// The program itself, seen from outside.

TEST(EndsFromOutsideTest, TheTerminalsSignalsReachTheSimulatedModuleOnlyThroughTheProgram) {
    const QTemporaryDir folder;
    const auto table = folder.filePath(QStringLiteral("street.tbl"));
    std::ofstream(FromQt(table)) << FormatTableFile(FlatTable(TableType::RACE, 20), {});
    QProcess program;
    program.setChildProcessModifier([] { setpgid(0, 0); });
    program.start(QStringLiteral(RV52_PROGRAM),
                  {QStringLiteral("--simulate"), QStringLiteral("RACE"), table});
    ASSERT_TRUE(QTest::qWaitFor([&] { return WaitsForSignals(program.processId()); }, 20000));
    QTest::qWait(200);  // the table is opened once the window stands
    const auto process = static_cast<pid_t>(program.processId());
    const auto children =
        "/proc/" + std::to_string(process) + "/task/" + std::to_string(process) + "/children";
    pid_t simulator = 0;
    ASSERT_TRUE(std::ifstream(children) >> simulator);
    kill(-process, SIGINT);  // as Ctrl+C does
    EXPECT_FALSE(program.waitForFinished(1100)) << "it asks";
    EXPECT_EQ(kill(simulator, 0), 0) << "the module has to be there for what the answer brings";
    kill(-process, SIGKILL);
    ASSERT_TRUE(program.waitForFinished());
    EXPECT_TRUE(QTest::qWaitFor([&] { return kill(simulator, 0) != 0; })) << "it has nobody left to serve";
}

// This test's own program, once more from a folder whose simulator does not work.
TEST(EndsFromOutsideTest, ASimulatorThatDoesNotStartIsToldOfAndNothingStarts) {
    namespace fs = std::filesystem;
    const auto here = fs::read_symlink("/proc/self/exe");
    if (!qEnvironmentVariableIsSet("RV52_APART")) {
        const QTemporaryDir folder(ToQt((here.parent_path() / "apart").string()));
        const fs::path apart = FromQt(folder.path());
        for (const auto& file : fs::directory_iterator(here.parent_path()))
            if (file.is_regular_file() && (file.path() == here || !file.path().extension().empty()))
                fs::create_hard_link(file, apart / file.path().filename());
        std::ofstream(apart / "rv52_simulator") << "#!/bin/sh\necho 'no pseudo-terminals here' >&2\n";
        fs::permissions(apart / "rv52_simulator", fs::perms::owner_all);
        qputenv("RV52_APART", "1");
        QProcess again;
        again.setProcessChannelMode(QProcess::MergedChannels);
        again.start(ToQt((apart / here.filename()).string()),
                    {QStringLiteral("--gtest_filter=*ASimulatorThatDoesNotStart*")});
        EXPECT_TRUE(again.waitForFinished(20000));
        qunsetenv("RV52_APART");
        EXPECT_EQ(again.exitCode(), 0) << FromQt(QString::fromUtf8(again.readAll()));
        return;
    }
    CommandLine options;
    options.simulate = TableType::RACE;
    DesktopProgram program(options);
    QString told;
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, &look, [&] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (box == nullptr) return;
        told = box->text();
        box->close();
    });
    look.start(5);
    const std::string reason = "The simulated module cannot be started: no pseudo-terminals here.";
    EXPECT_EQ(FailureOf([&] { program.Start(std::chrono::milliseconds(1)); }), reason);
    EXPECT_EQ(FromQt(told), reason);
    EXPECT_FALSE(program.Window().isVisible());
}

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
