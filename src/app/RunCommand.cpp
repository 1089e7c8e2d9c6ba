#include "app/RunCommand.h"

#include "app/Leaving.h"
#include "app/state/FormResize.h"
#include "app/state/Session.h"
#include "chart/commands/ChartEditing.h"

namespace rv52 {

namespace {

void ForgetOutcome(Session& session) {
    if (session.state.LastOutcome.empty()) return;
    session.state.LastOutcome.clear();
    session.shell.RenewStatus();
}

// However a command ends, others may then have its module.
class DeviceForOneCommand {
 public:
    explicit DeviceForOneCommand(Line& line) : line_(line) {}
    ~DeviceForOneCommand() { line_.EndHold(); }
    DeviceForOneCommand(const DeviceForOneCommand&) = delete;
    DeviceForOneCommand& operator=(const DeviceForOneCommand&) = delete;

 private:
    Line& line_;
};

}  // namespace

void RunCommand(Session& session, const std::function<void(Session&)>& command) {
    if (session.gate.Busy()) return;
    bool close = false;
    {
        const CommandGate::Closed closed(session.gate);
        if (session.view.CommitEditor()) {
            const DeviceForOneCommand device(session.line);
            ChartDragLost(session);  // commands read the grid's texts, which lag behind a drag
            session.state.AbortRequested = false;
            ForgetOutcome(session);
            command(session);
            session.drawing.Tell(session.steps);
        }
        if (session.gate.SettingsPending()) Form_Resize(session);
        close = session.gate.ClosePending();
    }
    if (close) RequestExit(session);
}

void UserActed(Session& session) {
    if (!session.gate.Busy()) ForgetOutcome(session);
}

}  // namespace rv52
