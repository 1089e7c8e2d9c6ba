#pragma once

namespace rv52 {

struct Session;

// Menu commands that are not part of this version yet: each says so in a box.
void mnuNewTable_Click(Session& session);

}  // namespace rv52
