#pragma once

namespace rv52 {

struct Session;

// Escape pressed in the main window.
void EscapePressed(Session& session);

// The keys that undo and redo what was done to the table. During a drag, and without a table on screen, they
// do nothing.
void UndoPressed(Session& session);
void RedoPressed(Session& session);

}  // namespace rv52
