#pragma once

#include <string>

namespace rv52 {

struct Session;

void mnuSaveTable_Click(Session& session);
void mnuCloseTable_Click(Session& session);

// Asks the question whenever a table is shown, with Yes, No and Cancel; Yes saves, whatever comes of it.
// False when cancelled: the command that was about to replace or hide the table ends.
bool OfferToSave(Session& session, const std::string& question, const std::string& title);

// A load that cannot go on: says why, runs Close Table, and returns false.
bool RefuseLoad(Session& session, const std::string& text, const std::string& title);

// The window's title names the file that was opened or saved.
void SetFileCaption(Session& session, const std::string& path);

}  // namespace rv52
