#pragma once

#include "app/state/Version.h"
#include "module/EepromMap.h"
#include "table/AdvanceTable.h"
#include "table/ModuleParameters.h"
#include "table/TableType.h"

#include <cstdint>
#include <string>
#include <vector>

namespace rv52 {

// What a command does with the module's memory right now.
enum class LinkWork { None, Reading, Programming, Verifying };

// The one working state of the program, created at start-up; the current table's values stand beside it in
// the TableStore. A field is changed only by the commands that own it.
struct AppState {
    // The type of the current table; a transfer to a module sets it to the module's for its own duration.
    rv52::TableType TableType = rv52::TableType::RACE;
    std::string FirmwareId;  // as last read from a module
    rv52::ModuleParameters ModuleParameters;
    rv52::EepromBuffer EepromBuffer{};
    AdvanceTable ExMaxTable{rv52::TableType::EX};  // the upper limit of each EX cell, loaded at start-up
    bool TableShown = false;                       // chart and grid are on screen
    std::string BaseCaption = std::string("Corvane RV52 Version ") + kVersion;
    int CommPort = 1;             // 1 to 255
    bool AbortRequested = false;  // Escape; polled by read and verify
    bool EchoMode = false;        // the module echoes each byte it receives
    bool CommOK = false;          // success of the last link procedure
    rv52::LinkWork LinkWork = rv52::LinkWork::None;
    std::string
        LastOutcome;  // of the last command, for the status line; until the next key, click or command
    std::int16_t VerifyErrors = 0;
    std::int16_t LineErrorCount = 0;  // since the serial settings were last applied
    std::string CopyBuffer;           // cells joined by tabs, rows by carriage returns
    int CopyRows = 0;                 // last row − first row of the copied block
    int CopyCols = 0;
    std::vector<std::string> BrandingLines;  // line 1 is the brand, the others the maker's contact lines
    std::string Vin;
};

// The upper limit of a cell in degrees, the lower one being 0: 45 for RACE, ExMaxTable's value for EX.
double CellLimit(const AppState& state, TableType type, Cell cell);

}  // namespace rv52
