#pragma once

#include "UserActions.h"
#include "app/ui/DesktopProgram.h"
#include "tour/Robot.h"

namespace rv52::test {

// The whole program in its real windows, used by a robot, on a system without printers.
class ProgramFixture : public testing::Test {
 protected:
    void Start(const CommandLine& options = {},
               std::chrono::milliseconds splash = std::chrono::milliseconds(1)) {
        qputenv("CUPS_SERVER", "/nowhere/cups.sock");
        robot_.reset();
        program_ = std::make_unique<DesktopProgram>(options);
        ASSERT_TRUE(program_->Start(splash));
        robot_ = std::make_unique<Robot>(Window());
        Activate(Window());
    }
    // With a simulated module on a real serial device.
    void Simulate(TableType module = TableType::RACE) {
        CommandLine options;
        options.simulate = module;
        Start(options);
    }
    void TearDown() override {
        EXPECT_TRUE(robot_->Done());
        for (const auto& problem : robot_->Problems())
            ADD_FAILURE() << problem;
    }

    void Download() {
        robot_->ExpectBox("Firmware ID: ", "cmdOK");
        robot_->Choose("mnuComm", "mnuDownload");
        ASSERT_TRUE(State().TableShown);
    }
    template <class Widget = QWidget>
    Widget& Part(const char* name) {
        return Find<Widget>(Window(), name);
    }

    MainWindow& Window() { return program_->Window(); }
    Session& Running() { return program_->Running(); }
    AppState& State() { return Running().state; }
    std::string Caption() { return FromQt(Window().windowTitle()); }

    std::unique_ptr<DesktopProgram> program_;
    std::unique_ptr<Robot> robot_;
};

}  // namespace rv52::test
