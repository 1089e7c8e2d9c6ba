#pragma once

namespace rv52 {

struct Session;

// The main window's load: restores the port, sets the working state, loads the EX template and the EX
// maximum. False when a file beside the program is missing: the message has been shown and the program
// ends without a window.
bool StartUp(Session& session);

}  // namespace rv52
