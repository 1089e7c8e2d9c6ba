#include "link/commands/PortSetup.h"

#include "app/state/Session.h"
#include "platform/ComDevices.h"

#include <charconv>

namespace rv52 {

namespace {

constexpr const char* kSection = "Properties";
constexpr const char* kKey = "CommPort";

}  // namespace

int StoredCommPort(const Settings& settings) {
    const auto text = settings.Get(kSection, kKey, "1");
    int commPort = 0;
    const auto* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, commPort);
    const bool valid =
        result.ec == std::errc{} && result.ptr == end && commPort >= 1 && commPort <= kHighestCommPort;
    return valid ? commPort : 1;
}

void mnuPortSetup_Click(Session& session) {
    session.steps.Procedure([&](Steps& step) { step([&] { session.shell.ShowPortPanel(); }); });
}

void cboPort_Click(Session& session, int index) {
    session.steps.Procedure([&](Steps& step) {
        session.state.CommPort = index + 1;
        session.shell.RenewStatus();
        step([&] { session.settings.Set(kSection, kKey, std::to_string(session.state.CommPort)); });
        step([&] { session.line.Close(); });
    });
}

void cmdPortSelectOK_Click(Session& session) {
    session.steps.Procedure([&](Steps& step) { step([&] { session.shell.HidePortPanel(); }); });
}

}  // namespace rv52
