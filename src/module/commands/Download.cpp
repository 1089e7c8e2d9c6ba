#include "module/commands/Download.h"

#include "app/state/Session.h"
#include "link/commands/LinkProcedures.h"
#include "link/commands/ModuleMessages.h"
#include "module/EepromImage.h"
#include "table/commands/LoadChartTemplate.h"
#include "table/commands/SaveAndCloseTable.h"
#include "table/commands/TableDisplay.h"

namespace rv52 {

namespace {

constexpr const char* kTitle = "Download From EEPROM";

void ShowCaption(Session& session, const char* suffix) {
    session.steps([&] { session.shell.SetCaption(session.state.BaseCaption + suffix); });
}

void ClearTable(Session& session) {
    session.steps([&] { HideTable(session); });
    session.steps([&] { session.line.Yield(); });
    ClearEEPROMBuffer(session.state.EepromBuffer);
    ShowCaption(session, " - Data Buffer Empty");
}

// A read that was ended by closing the window needs no word.
bool ReadImage(Session& session) {
    ReadEEPROMData(session);
    if (session.state.CommOK) return true;
    if (!session.gate.ClosePending()) session.steps.Tell("Download failed.", kTitle);
    ClearEEPROMBuffer(session.state.EepromBuffer);
    return false;
}

// The image becomes the current table and parameters, on a chart of the module's type; false without the
// type's template, the load then being refused.
bool TakeImage(Session& session) {
    auto& state = session.state;
    const RedrawHold hold(session.table);
    session.steps([&] {
        session.table.Replace(DecodeEepromImage(state.EepromBuffer, state.TableType, state.ModuleParameters));
    });
    return TakeChartTemplate(session, state.TableType);
}

void ShowDownloaded(Session& session) {
    const auto type = session.state.TableType;
    session.steps([&] { SetUpTableGrid(session, type); });
    FillAndShowTable(session, "downloaded", {GridRow(0), GridColumn(0)});
    ShowCaption(session, " - Downloaded Data");
    session.steps([&] { SetEditingPermission(session, type); });
}

}  // namespace

void mnuDownload_Click(Session& session) {
    session.steps.Procedure([&](Steps&) {
        if (!OfferToSave(session, "Save advance table before downloading?", kTitle)) return;
        if (session.gate.ClosePending()) return;
        session.gate.SetCloseAborts(true);
        ClearTable(session);
        if (!IdentifyModule(session, kTitle, "download") || !ShowFirmwareId(session, kTitle)) return;
        if (!ReadImage(session) || !TakeImage(session)) return;
        ShowDownloaded(session);
    });
}

}  // namespace rv52
