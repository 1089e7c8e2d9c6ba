#pragma once

#include "cli/TableTexts.h"

#include <string>

namespace rv52::cli {

class Tool;

// Opens a table file as the window does; throws Ending with the window's words when it does not open.
Snapshot LoadTable(Tool& tool, const std::string& path);
// The same of a file that has been read already.
Snapshot LoadTable(Tool& tool, const std::string& path, const std::string& content);

}  // namespace rv52::cli
