#pragma once

namespace rv52 {

struct Session;

// Takes back what was last done to the table, and makes again what was last taken back: its values, the
// grid's texts, cursor and selection. The status line tells what it was.
void UndoEdit(Session& session);
void RedoEdit(Session& session);

}  // namespace rv52
