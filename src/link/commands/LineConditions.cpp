#include "link/commands/LineConditions.h"

#include "app/state/Session.h"
#include "link/LinkTexts.h"

namespace rv52 {

namespace {

constexpr int kToleratedLineErrors = 2;

// Retry and Cancel only choose what becomes of the bytes that wait; what becomes of the exchange that was
// interrupted is the link's business.
void MSComm1_OnComm(Session& session, LineCondition condition) {
    session.link.Disturb();
    if (++session.state.LineErrorCount > kToleratedLineErrors) session.line.Close();
    const auto answer = session.prompts.Ask(
        {LinkTexts::Of(condition), "Communications Error", Icon::Critical, Buttons::RetryCancel});
    if (answer == Answer::Retry && session.line.IsOpen()) session.line.Discard();
}

}  // namespace

void HandleLineConditions(Session& session) {
    session.line.OnCondition([&session](LineCondition condition) { MSComm1_OnComm(session, condition); });
}

}  // namespace rv52
