#pragma once

#include "app/state/GridSheet.h"

#include <string>

namespace rv52 {

struct Session;

// The highest advance that grid cell `at` takes, in degrees: 45 for RACE, the EX maximum of that very cell
// for EX. The type is the working state's, whatever the table on screen was loaded as.
double UpperLimit(const Session& session, GridCell at);

// The edit of a cell ends with nobody to ask, as when the program is left: a text that may become the cell's
// content does, any other is given up.
void SettleEdit(Session& session, GridCell at, const std::string& typed);

// Whether text may become the content of a cell: a whole number text of 0 to the cell's upper limit, both
// ends included. Otherwise says so in a box.
bool ValidateEdit(Session& session, GridCell at, const std::string& text);

// A validated text: the cell keeps it as typed, the table gets its value unrounded, the chart's value label
// its one-decimal form.
void AcceptEdit(Session& session, GridCell at, const std::string& text);

// The user ends the edit of a cell. Tabs and line ends around what was typed or pasted are no part of the
// text. False when the text is refused and the editor has to stay open.
bool EndEdit(Session& session, GridCell at, const std::string& typed);

}  // namespace rv52
