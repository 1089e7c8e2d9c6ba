#include "app/ComingCommands.h"

#include "app/Session.h"

namespace rv52 {

namespace {

void SayNotYet(Session& session, const char* title) {
    session.prompts.Ask(
        {"This command is not part of this version yet.", title, Icon::Information, Buttons::Ok});
}

}  // namespace

void mnuNewTable_Click(Session& session) {
    SayNotYet(session, "New Table");
}

}  // namespace rv52
