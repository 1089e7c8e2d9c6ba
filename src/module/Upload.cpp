#include "module/Upload.h"

#include "app/Session.h"
#include "link/EepromTransfer.h"
#include "link/ModuleProtocol.h"
#include "link/TableTypeGuard.h"
#include "module/EepromImage.h"

namespace rv52 {

namespace {

void Tell(Session& session, const char* text, Icon icon) {
    session.steps([&] { session.prompts.Ask({text, "Upload To EEPROM", icon, Buttons::Ok}); });
}

bool IdentifyModule(Session& session) {
    ReadFirmwareID(session);
    if (!session.state.CommOK) {
        Tell(session, "Firmware ID read failed - cannot upload.", Icon::Warning);
        return false;
    }
    if (session.state.FirmwareId.empty()) {
        Tell(session, "Invalid firmware ID - cannot upload.", Icon::Warning);
        return false;
    }
    return true;
}

// The values themselves say which rows they have. TableType may have followed a module since they were
// shown.
bool LacksRows(const Session& session) {
    return session.table.Table().Type() != TableType::EX && session.state.TableType == TableType::EX;
}

void Program(Session& session) {
    auto& state = session.state;
    state.CommOK = false;
    const bool encoded = session.steps.Value(
        [&] {
            EncodeEepromImage(session.table.Table(), state.ModuleParameters, state.TableType,
                              state.EepromBuffer);
            return true;
        },
        false);
    // Whatever the buffer held before is never programmed.
    if (encoded) WriteEEPROMData(session);
}

void ReportOutcome(Session& session) {
    if (!session.state.CommOK)
        Tell(session, "Upload aborted - EEPROM programming failed.", Icon::Information);
    else if (session.state.VerifyErrors != 0)
        Tell(session, "Upload aborted - EEPROM verification failed.", Icon::Information);
    else
        Tell(session, "Upload completed.", Icon::Warning);
}

}  // namespace

void mnuUpload_Click(Session& session) {
    session.steps.Procedure([&](Steps&) {
        session.state.AbortRequested = false;
        if (!session.state.TableShown || !session.table.HasTable())
            return Tell(session, "No advance table data for uploading.", Icon::Warning);
        const TableTypeGuard guard(session.state);
        if (!IdentifyModule(session)) return;
        if (LacksRows(session)) return Tell(session, "Cannot upload race data to EX version", Icon::None);
        Program(session);
        ReportOutcome(session);
    });
}

}  // namespace rv52
