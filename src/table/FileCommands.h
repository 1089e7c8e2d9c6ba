#pragma once

#include <string>

namespace rv52 {

struct Session;

// The File menu's table commands.
void mnuOpenTable_Click(Session& session);
void mnuCloseTable_Click(Session& session);
void mnuSaveTable_Click(Session& session);

// Opens the file at path as the Open command does from its file dialog on; for the command line.
void OpenTableFile(Session& session, const std::string& path);

}  // namespace rv52
