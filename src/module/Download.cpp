#include "module/Download.h"

#include "app/Session.h"
#include "link/EepromTransfer.h"
#include "link/ModuleProtocol.h"
#include "module/EepromImage.h"
#include "table/FileCommands.h"
#include "table/TableDisplay.h"

namespace rv52 {

namespace {

constexpr const char* kTitle = "Download From EEPROM";

void Warn(Session& session, const std::string& text) {
    session.steps([&] { session.prompts.Ask({text, kTitle, Icon::Warning, Buttons::Ok}); });
}

void ShowCaption(Session& session, const char* suffix) {
    session.steps([&] { session.shell.SetCaption(session.state.BaseCaption + suffix); });
}

void ClearTable(Session& session) {
    session.steps([&] { HideTable(session); });
    session.steps([&] { session.line.Pump(); });
    ClearEEPROMBuffer(session.state.EepromBuffer);
    ShowCaption(session, " - Data Buffer Empty");
}

bool IdentifyModule(Session& session) {
    const auto& state = session.state;
    ReadFirmwareID(session);
    if (!state.CommOK) {
        Warn(session, "Firmware ID read failed - cannot download.");
        return false;
    }
    if (state.FirmwareId.empty()) {
        Warn(session, "Invalid firmware ID - cannot download.");
        return false;
    }
    Warn(session, "Firmware ID: " + state.FirmwareId);
    return true;
}

bool ReadImage(Session& session) {
    ReadEEPROMData(session);
    if (session.state.CommOK) return true;
    Warn(session, "Download failed.");
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
    FillAndShowTable(session, {0, 0});
    ShowCaption(session, " - Downloaded Data");
    session.steps([&] { SetEditingPermission(session, type); });
}

}  // namespace

void mnuDownload_Click(Session& session) {
    session.steps.Procedure([&](Steps&) {
        session.state.AbortRequested = false;
        if (!OfferToSave(session, "Save advance table before downloading?", kTitle)) return;
        session.gate.SetCloseAborts(true);
        ClearTable(session);
        if (!IdentifyModule(session) || !ReadImage(session)) return;
        if (!TakeImage(session)) return;
        ShowDownloaded(session);
    });
}

}  // namespace rv52
