#include "app/state/FormResize.h"

#include "app/state/Session.h"

namespace rv52 {

namespace {

void RenewSerialSettings(Session& session) {
    session.line.Close();
    if (!session.shell.InnerSize().minimised) RestartLineErrorCount(session);
}

}  // namespace

void Form_Resize(Session& session) {
    session.shell.Place(LayOut(session.shell.InnerSize()));
    RenewSerialSettings(session);
}

void WindowResized(Session& session) {
    if (!session.gate.Busy()) return Form_Resize(session);
    session.shell.Place(LayOut(session.shell.InnerSize()));
    session.gate.DeferSettings();
}

void RestartLineErrorCount(Session& session) {
    session.state.LineErrorCount = 0;
}

}  // namespace rv52
