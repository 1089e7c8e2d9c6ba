#pragma once

#include <functional>

namespace rv52 {

struct Session;

// Runs one command behind the gate: nothing when another one is running, or when an open cell editor
// refuses its text. What had to wait meanwhile (a failure to draw, serial settings, a close) follows in any
// case. An Escape from before the command has no effect on it.
void RunCommand(Session& session, const std::function<void(Session&)>& command);

// The main window is asked to close. Runs the exit sequence, or after the running command has ended.
// A close while a module is read ends the reading as Escape does.
void RequestExit(Session& session);

// What is left to do for the desktop half when the system asks the program to end.
enum class EndAct {
    Nothing,      // the exit sequence is already under way
    CloseBoxes,   // as their close boxes would; then the exit sequence, unless it follows a running command
    LeaveAtOnce,  // without a question
};

// The system asks the program to end, by a signal for instance: the first time as a close of the main window,
// the second time at once. Nothing stops the programming of a module and its verify.
EndAct AskedToEnd(Session& session);

// The exit sequence: the save question, the port, the windows.
void Exit(Session& session);

// A key or a mouse button pressed in the main window: the last command's outcome has been read.
void UserActed(Session& session);

// Escape pressed in the main window.
void EscapePressed(Session& session);

// The keys that undo and redo what was done to the table. During a drag, and without a table on screen, they
// do nothing.
void UndoPressed(Session& session);
void RedoPressed(Session& session);

void mnuAbout_Click(Session& session);
void mnuHelpContents_Click(Session& session);

}  // namespace rv52
