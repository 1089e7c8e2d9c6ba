#pragma once

#include "cli/TableTexts.h"

namespace rv52::cli {

class Tool;

// The module's table and parameters, read as the window downloads them. Throws Ending when they do not come.
Snapshot DownloadedFrom(Tool& tool);

}  // namespace rv52::cli
