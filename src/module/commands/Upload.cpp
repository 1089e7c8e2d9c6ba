#include "module/commands/Upload.h"

#include "app/state/Session.h"
#include "link/commands/LinkProcedures.h"
#include "link/commands/ModuleMessages.h"
#include "module/EepromImage.h"

namespace rv52 {

namespace {

constexpr const char* kTitle = "Upload To EEPROM";

// The values themselves say which rows they have. TableType may have followed a module since they were
// shown.
bool LacksRows(const Session& session) {
    return session.table.Table().Type() != TableType::EX && session.state.TableType == TableType::EX;
}

// False when it failed, which has been told: whatever the buffer held before is never programmed.
bool Encode(Session& session) {
    auto& state = session.state;
    return session.steps.Value(
        [&] {
            EncodeEepromImage(session.table.Table(), state.ModuleParameters, state.TableType,
                              state.EepromBuffer);
            return true;
        },
        false);
}

}  // namespace

void mnuUpload_Click(Session& session) {
    session.steps.Procedure([&](Steps& step) {
        if (!session.state.TableShown || !session.table.HasTable())
            return step.Tell("No advance table data for uploading.", kTitle);
        const TableTypeGuard guard(session.state);
        if (IdentifyModule(session, kTitle, "upload")) UploadToIdentified(session);
    });
}

void UploadToIdentified(Session& session) {
    if (LacksRows(session))
        return session.steps.Tell("Cannot upload race data to EX version", kTitle, Icon::None);
    if (!Encode(session)) return;
    WriteEEPROMData(session);
    ReportUpload(session, kTitle, "Upload completed.");
}

}  // namespace rv52
