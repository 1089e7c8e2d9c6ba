#include "app/WindowKeys.h"

#include "app/RunCommand.h"
#include "app/state/Session.h"
#include "table/commands/Undo.h"

namespace rv52 {

namespace {

bool TableAtRest(const Session& session) {
    return session.state.TableShown && session.gesture.kind == ChartGesture::Kind::None;
}

}  // namespace

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

}  // namespace rv52
