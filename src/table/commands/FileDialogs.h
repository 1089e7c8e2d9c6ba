#pragma once

#include <string>

namespace rv52 {

struct Session;

// The two file dialogs with the program's own questions. An empty filter stands for all files. Both return
// the path, or the empty text when nothing was chosen, and throw FileDialogFailure when the question is
// cancelled or a failure inside is aborted.

// Asks for a file to open. A missing file can be chosen again or, when notExistMessage is not empty, that
// question decides whether its path is returned. A path that has been chosen before, as on the command line,
// takes the place of the first dialog.
std::string FileOpen(Session& session, const std::string& fileTitle, const std::string& filter,
                     const std::string& notExistMessage, std::string chosen = {});

// Asks for a file to save to; for one that exists, existMessage decides ("Replace existing file?" when
// empty).
std::string FileSave(Session& session, const std::string& fileTitle, const std::string& filter,
                     const std::string& existMessage);

}  // namespace rv52
