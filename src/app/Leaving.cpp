#include "app/Leaving.h"

#include "app/state/FormResize.h"
#include "app/state/Session.h"
#include "table/commands/SaveAndCloseTable.h"

namespace rv52 {

namespace {

// A terminal that is closed tells so up to three times, and a shutdown by two signals in a row.
constexpr std::chrono::seconds kOneRequest(1);

}  // namespace

void RequestExit(Session& session) {
    if (session.gate.Busy()) {
        session.gate.DeferClose();
        if (session.gate.CloseAborts()) session.state.AbortRequested = true;
        return;
    }
    const CommandGate::Closed closed(session.gate);
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

}  // namespace rv52
