#pragma once

#include "platform/Prompts.h"

#include <string>

namespace rv52 {

struct Session;

inline constexpr const char* kTableFilter = "Advance table files (*.tbl)|*.tbl";

// The two file dialogs with the program's own questions. An empty filter stands for all files. Both return
// the path, or the empty text when nothing was chosen, and throw FileDialogFailure when the question is
// cancelled or a failure inside is aborted.

// Asks for a file to open. A missing file can be chosen again or, when notExistMessage is not empty, that
// question decides whether its path is returned. A path that has been chosen before, as on the command line,
// takes the place of the first dialog.
std::string FileOpen(Session& session, const std::string& fileTitle, const std::string& filter,
                     const std::string& notExistMessage, std::string chosen = {});

// Whether a file that exists may be replaced: "Replace existing file?" when question is empty.
MessageBox ExistsBox(const std::string& path, const std::string& title, const std::string& question = {});

// Asks for a file to save to; for one that exists, existMessage decides, as in ExistsBox.
std::string FileSave(Session& session, const std::string& fileTitle, const std::string& filter,
                     const std::string& existMessage);

}  // namespace rv52
