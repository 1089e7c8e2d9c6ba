#pragma once

#include "app/state/AppState.h"
#include "app/state/ChartState.h"
#include "app/state/CommandGate.h"
#include "app/state/DrawFailures.h"
#include "app/state/EditHistory.h"
#include "app/state/GridSheet.h"
#include "app/state/TableStore.h"
#include "app/state/WindowPorts.h"
#include "link/ModuleLink.h"
#include "platform/Line.h"
#include "platform/Printer.h"
#include "platform/Prompts.h"
#include "platform/Steps.h"
#include "platform/Storage.h"

#include <string>
#include <utility>

namespace rv52 {

// The platform as the program sees it.
struct Ports {
    Line& line;
    Prompts& prompts;
    ChartAndGrid& view;
    Shell& shell;
    Files& files;
    Settings& settings;
    Printer& printer;
};

// One run of the program: the platform's ports, the working state, and the current table with what chart
// and grid show of it. Every procedure and menu command is a plain function on this.
struct Session : Ports {
    explicit Session(const Ports& ports) : Ports(ports) {}
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    AppState state;
    DrawFailures drawing;
    TableStore table{drawing};
    ChartState chart{table};
    ChartGesture gesture;
    GridSheet sheet{drawing};
    EditHistory history{table, sheet};
    Steps steps{prompts};
    ModuleLink link{line, prompts};
    CommandGate gate;
};

// What has become of a command, in the status line until the next key, click or command.
inline void TellOutcome(Session& session, std::string outcome) {
    session.state.LastOutcome = std::move(outcome);
    session.shell.RenewStatus();
}

}  // namespace rv52
