#pragma once

namespace rv52 {

struct Session;

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

}  // namespace rv52
