#pragma once

namespace rv52 {

struct Session;

// The Help menu: who made the program, and its help.

void mnuAbout_Click(Session& session);
void mnuHelpContents_Click(Session& session);

}  // namespace rv52
