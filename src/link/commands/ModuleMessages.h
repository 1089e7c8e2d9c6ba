#pragma once

#include "app/state/AppState.h"

#include <string>

namespace rv52 {

struct Session;

// What Download, Upload and Edit VIN say to the user in the same words. Each box has the command's title.

// Identifies the module. False when the command ends here: it could not be identified, which has been told
// with the command's verb ("cannot download."), or the window was asked to close meanwhile.
bool IdentifyModule(Session& session, const std::string& title, const std::string& verb);

// "Firmware ID: …"; false when the window was asked to close by then.
bool ShowFirmwareId(Session& session, const std::string& title);

// How programming and verifying ended, told in the box and then by the status line. completed is the box's
// text for a success.
void ReportUpload(Session& session, const std::string& title, const std::string& completed);

// "RV52A SIM 8.1, taken for RACE": whom the program talks to, as far as it can know.
std::string IdentifiedAs(const AppState& state);

// Identifying a module makes TableType the module's. The guard gives it back at the end of the command, by
// whichever way the command ends, so that the module's type never outlives it.
class TableTypeGuard {
 public:
    explicit TableTypeGuard(AppState& state) : state_(state), kept_(state.TableType) {}
    ~TableTypeGuard() { state_.TableType = kept_; }
    TableTypeGuard(const TableTypeGuard&) = delete;
    TableTypeGuard& operator=(const TableTypeGuard&) = delete;

 private:
    AppState& state_;
    TableType kept_;
};

}  // namespace rv52
