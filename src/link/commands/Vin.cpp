#include "link/commands/Vin.h"

#include "app/state/Session.h"
#include "link/commands/LinkProcedures.h"
#include "link/commands/ModuleMessages.h"
#include "platform/Text.h"

namespace rv52 {

namespace {

constexpr const char* kTitle = "Edit RV52A VIN";

bool TakesVin(Session& session) {
    if (ContainsNoCase(session.state.FirmwareId, "RV52A")) return true;
    session.steps.Tell("VIN feature only valid on RV52A Rev 8.1 or higher unit.", kTitle);
    return false;
}

// Closing the window ends the reading. A read that has failed just leaves the last VIN known as the one to
// start from.
void OfferVin(Session& session) {
    session.gate.SetCloseAborts(true);
    ReadVINData(session);
    session.gate.SetCloseAborts(false);
}

// A VIN that the module can hold; empty when the user wants none, or wants to leave.
std::string AskForVin(Session& session) {
    while (!session.gate.ClosePending()) {
        auto answer = session.steps.Value(
            [&] {
                return session.prompts.AskText(
                    {"Enter new RV52A VIN (17 characters)", kTitle, session.state.Vin});
            },
            std::string{});
        if (answer.empty() || VinCodes(answer)) return answer;
    }
    return {};
}

bool Confirm(Session& session, const std::string& vin) {
    if (session.gate.ClosePending()) return false;
    const MessageBox question{"Verify new VIN is: " + vin, kTitle, Icon::None, Buttons::OkCancel};
    const auto answer = session.steps.Value([&] { return session.prompts.Ask(question); }, Answer::Cancel);
    return answer == Answer::Ok && !session.gate.ClosePending();
}

}  // namespace

void mnuEditVIN_Click(Session& session) {
    session.steps.Procedure([&](Steps&) {
        const TableTypeGuard guard(session.state);
        if (!IdentifyModule(session, kTitle, "edit VIN") || !ShowFirmwareId(session, kTitle)) return;
        if (!TakesVin(session)) return;
        OfferVin(session);
        const auto vin = AskForVin(session);
        if (vin.empty() || !Confirm(session, vin)) return;
        session.state.Vin = vin;
        WriteVINData(session);
        ReportUpload(session, kTitle, "Upload completed.\r\n");
    });
}

}  // namespace rv52
