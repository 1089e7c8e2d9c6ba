#pragma once

namespace rv52 {

struct Session;

// The commands of the grid's popup menu. They work on the data cells of the selection, and on EX tables too,
// whose cells cannot be edited in place. A selection on headers only changes nothing.

// Copies the texts of the selection into CopyBuffer; not to the desktop's clipboard.
void mnuPopUpCopy3D_Click(Session& session);

// Pastes one copied cell into every selected cell, or a copied block at the selection's top left, clipped to
// the grid. EX texts above their cell's limit become the limit.
void mnuPopupPaste3D_Click(Session& session);

// Asks for an expression and applies it to every selected cell, starting from the text the cell shows.
void mnuPopUpModify3D_Click(Session& session);

}  // namespace rv52
