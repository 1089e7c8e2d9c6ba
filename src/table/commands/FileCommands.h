#pragma once

#include "table/TableType.h"

#include <string>

namespace rv52 {

struct Session;

// The File menu's table commands.
void mnuOpenTable_Click(Session& session);
void mnuCloseTable_Click(Session& session);
void mnuSaveTable_Click(Session& session);

// Asks the question whenever a table is shown, with Yes, No and Cancel; Yes saves, whatever comes of it.
// False when cancelled: the command that was about to replace or hide the table ends.
bool OfferToSave(Session& session, const std::string& question, const std::string& title);

// A load that cannot go on: says why, runs Close Table, and returns false.
bool RefuseLoad(Session& session, const std::string& text, const std::string& title);

// The type's chart template as every load takes it: false when it is missing and the load has been refused.
bool TakeChartTemplate(Session& session, TableType type);

// Open Table with a path in the place of its file dialog: for a file named on the command line.
void OpenTableFile(Session& session, const std::string& path);

}  // namespace rv52
