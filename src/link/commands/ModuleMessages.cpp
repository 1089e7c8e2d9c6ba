#include "link/commands/ModuleMessages.h"

#include "app/state/Session.h"
#include "link/commands/LinkProcedures.h"

namespace rv52 {

namespace {

constexpr std::size_t kShownOfIdentification = 40;  // characters

}  // namespace

bool IdentifyModule(Session& session, const std::string& title, const std::string& verb) {
    const auto& state = session.state;
    ReadFirmwareID(session);
    if (session.gate.ClosePending()) return false;
    if (state.CommOK && !state.FirmwareId.empty()) return true;
    const std::string reason = state.CommOK ? "Invalid firmware ID" : "Firmware ID read failed";
    session.steps.Tell(reason + " - cannot " + verb + ".", title);
    return false;
}

bool ShowFirmwareId(Session& session, const std::string& title) {
    session.steps.Tell("Firmware ID: " + session.state.FirmwareId, title);
    return !session.gate.ClosePending();
}

void ReportUpload(Session& session, const std::string& title, const std::string& completed) {
    const auto& state = session.state;
    const bool programmed = state.CommOK;
    const bool verified = programmed && state.VerifyErrors == 0;
    const std::string aborted = programmed ? "Upload aborted - EEPROM verification failed."
                                           : "Upload aborted - EEPROM programming failed.";
    TellOutcome(session, verified ? "Upload completed: " + IdentifiedAs(state) + "." : aborted);
    session.gate.SetDismissesBoxes(false);  // what has become of a module is never left unsaid
    session.steps.Tell(verified ? completed : aborted, title, verified ? Icon::Warning : Icon::Information);
}

std::string IdentifiedAs(const AppState& state) {
    auto name = state.FirmwareId;
    if (name.size() > kShownOfIdentification) name = name.substr(0, kShownOfIdentification - 1) + "\u2026";
    return name + ", taken for " + std::string(ToText(state.TableType));
}

}  // namespace rv52
