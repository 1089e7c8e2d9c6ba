#include "app/Commands.h"

#include "app/Branding.h"
#include "app/state/FormResize.h"
#include "app/state/Session.h"
#include "chart/commands/ChartEditing.h"
#include "table/commands/FileCommands.h"
#include "table/commands/Undo.h"

namespace rv52 {

namespace {

// A terminal that is closed tells so up to three times, and a shutdown by two signals in a row.
constexpr std::chrono::seconds kOneRequest(1);

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

bool TableAtRest(const Session& session) {
    return session.state.TableShown && session.gesture.kind == ChartGesture::Kind::None;
}

}  // namespace

void RunCommand(Session& session, const std::function<void(Session&)>& command) {
    if (session.gate.Busy()) return;
    bool close = false;
    {
        const CommandGate::Stay stay(session.gate);
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

void RequestExit(Session& session) {
    if (session.gate.Busy()) {
        session.gate.DeferClose();
        if (session.gate.CloseAborts()) session.state.AbortRequested = true;
        return;
    }
    const CommandGate::Stay stay(session.gate);
    session.gate.SetLeaving(true);
    session.view.SettleEditor();
    Exit(session);
    session.gate.SetEndAskedAt({});
    if (session.gate.SettingsPending()) Form_Resize(session);
}

EndAct AskedToEnd(Session& session) {
    auto& gate = session.gate;
    const auto now = session.line.Now();
    const auto before = gate.EndAskedAt();
    if (before && now - *before < kOneRequest) return EndAct::Nothing;
    if (!before) gate.SetEndAskedAt(now);

    const auto work = session.state.LinkWork;
    if (work == LinkWork::Programming || work == LinkWork::Verifying) {
        gate.DeferClose();
        return EndAct::CloseBoxes;
    }
    if (before) return EndAct::LeaveAtOnce;
    if (gate.Leaving()) return EndAct::Nothing;
    if (gate.Busy()) {
        RequestExit(session);
        gate.SetDismissesBoxes(true);
    }
    return EndAct::CloseBoxes;
}

void Exit(Session& session) {
    session.steps.Procedure([&](Steps& step) {
        auto answer = Answer::No;
        if (session.state.TableShown)
            step([&] {
                answer = session.prompts.Ask({"Save advance table before exiting?", "Exit Program",
                                              Icon::Warning, Buttons::YesNoCancel});
            });
        if (answer == Answer::Yes) mnuSaveTable_Click(session);
        step([&] { session.line.Close(); });
        // No file outlives the command that reads or writes it, so none is left to close here.
        if (answer != Answer::Cancel) step([&] { session.shell.CloseWindows(); });
    });
}

void EscapePressed(Session& session) {
    session.state.AbortRequested = true;
    session.chart.HideLabel();
}

void UndoPressed(Session& session) {
    if (TableAtRest(session)) RunCommand(session, UndoEdit);
}

void RedoPressed(Session& session) {
    if (TableAtRest(session)) RunCommand(session, RedoEdit);
}

void UserActed(Session& session) {
    if (!session.gate.Busy()) ForgetOutcome(session);
}

void mnuAbout_Click(Session& session) {
    session.steps.Procedure([&](Steps& step) {
        const auto& branding = session.state.BrandingLines;
        std::string text = (branding.empty() ? "" : branding.front()) + " Corvane RV52 Version 8.10\r\n";
        text += std::string(kMakersNotice) + "\r\n\r\n";
        for (std::size_t line = 1; line < branding.size(); ++line)
            text += branding[line] + "\r\n";
        step([&] { session.prompts.Ask({text, "About", Icon::Information, Buttons::Ok}); });
    });
}

void mnuHelpContents_Click(Session& session) {
    session.steps.Procedure([&](Steps& step) {
        step([&] { session.shell.OpenHelp(session.files.ProgramFolder() + "Corvane_RV52_Help.chm"); });
    });
}

}  // namespace rv52
