#pragma once

namespace rv52 {

struct Session;

// Reads the table and the parameters of the connected module and makes them the current ones.
void mnuDownload_Click(Session& session);

}  // namespace rv52
