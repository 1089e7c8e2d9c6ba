#include "link/EditVin.h"

#include "app/Session.h"
#include "link/ModuleProtocol.h"
#include "link/TableTypeGuard.h"
#include "link/Vin.h"
#include "table/Text.h"

namespace rv52 {

namespace {

constexpr const char* kTitle = "Edit RV52A VIN";

bool Refuse(Session& session, const char* text) {
    session.steps([&] { session.prompts.Ask({text, kTitle, Icon::Warning, Buttons::Ok}); });
    return false;
}

bool IdentifyModule(Session& session) {
    const auto& state = session.state;
    ReadFirmwareID(session);
    if (!state.CommOK) return Refuse(session, "Firmware ID read failed - cannot edit VIN.");
    if (state.FirmwareId.empty()) return Refuse(session, "Invalid firmware ID - cannot edit VIN.");
    session.steps([&] {
        session.prompts.Ask({"Firmware ID: " + state.FirmwareId, kTitle, Icon::Warning, Buttons::Ok});
    });
    if (!ContainsNoCase(state.FirmwareId, "RV52A"))
        return Refuse(session, "VIN feature only valid on RV52A Rev 8.1 or higher unit.");
    return true;
}

// Closing the window ends the reading, and the question for a new VIN is then not asked any more. A read
// that has failed just leaves the last VIN known as the one to start from.
bool OfferVin(Session& session) {
    session.gate.SetCloseAborts(true);
    ReadVINData(session);
    session.gate.SetCloseAborts(false);
    return !session.gate.ClosePending();
}

// A VIN that the module can hold; empty when the user wants none.
std::string AskForVin(Session& session) {
    for (;;) {
        auto answer = session.steps.Value(
            [&] {
                return session.prompts.AskText(
                    {"Enter new RV52A VIN (17 characters)", kTitle, session.state.Vin});
            },
            std::string{});
        if (answer.empty() || VinCodes(answer)) return answer;
    }
}

bool Confirm(Session& session, const std::string& vin) {
    const MessageBox question{"Verify new VIN is: " + vin, kTitle, Icon::None, Buttons::OkCancel};
    return session.steps.Value([&] { return session.prompts.Ask(question); }, Answer::Cancel) == Answer::Ok;
}

void ReportOutcome(Session& session) {
    const auto tell = [&](const char* text, Icon icon) {
        session.steps([&] { session.prompts.Ask({text, kTitle, icon, Buttons::Ok}); });
    };
    if (!session.state.CommOK)
        tell("Upload aborted - EEPROM programming failed.", Icon::Information);
    else if (session.state.VerifyErrors != 0)
        tell("Upload aborted - EEPROM verification failed.", Icon::Information);
    else
        tell("Upload completed.\r\n", Icon::Warning);
}

}  // namespace

void mnuEditVIN_Click(Session& session) {
    session.steps.Procedure([&](Steps&) {
        session.state.AbortRequested = false;
        const TableTypeGuard guard(session.state);
        if (!IdentifyModule(session) || !OfferVin(session)) return;
        const auto vin = AskForVin(session);
        if (vin.empty() || !Confirm(session, vin)) return;
        session.state.Vin = vin;
        WriteVINData(session);
        ReportOutcome(session);
    });
}

}  // namespace rv52
