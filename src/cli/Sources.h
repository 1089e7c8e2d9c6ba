#pragma once

#include "cli/Commands.h"
#include "cli/TableTexts.h"
#include "module/EepromMap.h"

#include <string>

namespace rv52::cli {

class Tool;

// Where the tool has a table from, and where it puts it.

// Opens a table file as the window does; throws Ending with the window's words when it does not open.
Snapshot LoadTable(Tool& tool, const std::string& path);
// The same of a file that has been read already.
Snapshot LoadTable(Tool& tool, const std::string& path, const std::string& content);

// The module's table and parameters, read as the window downloads them. Throws Ending when they do not come.
Snapshot DownloadedFrom(Tool& tool);
// A file, or the module where the name is "module".
Snapshot LoadAny(Tool& tool, const std::string& name);

// Replaces the file as safely as the window does.
void SaveTable(Tool& tool, const std::string& path, const Snapshot& saved);

// What the session holds now.
Snapshot Current(const Tool& tool);

// The table and parameters as a module of that type keeps them, in the steps of its bytes; the four flag bits
// are those of held, the module's own. Throws Ending for a table that such a module does not take.
EepromBuffer BytesOf(const Snapshot& file, TableType type, const ModuleParameters& held);
Snapshot ReadBytes(const EepromBuffer& bytes, TableType type);

// Nothing was programmed: the port, the module, or the user who has interrupted it.
Ending NotReached(const Tool& tool);
// Throws NotReached where no table came from the module.
void RequireDownloaded(const Tool& tool);

}  // namespace rv52::cli
