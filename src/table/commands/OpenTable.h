#pragma once

#include <string>

namespace rv52 {

struct Session;

void mnuOpenTable_Click(Session& session);

// Open Table with a path in the place of its file dialog: for a file named on the command line.
void OpenTableFile(Session& session, const std::string& path);

}  // namespace rv52
