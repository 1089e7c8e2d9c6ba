#pragma once

#include <functional>

namespace rv52 {

struct Session;

// Runs one command behind the gate: nothing when another one is running, or when an open cell editor
// refuses its text. What had to wait meanwhile (a failure to draw, serial settings, a close) follows in any
// case. An Escape from before the command has no effect on it.
void RunCommand(Session& session, const std::function<void(Session&)>& command);

// A key or a mouse button pressed in the main window: the last command's outcome has been read.
void UserActed(Session& session);

}  // namespace rv52
