#pragma once

#include <string>
#include <string_view>

namespace rv52 {

// Replaces a file's content as a whole: a temporary file in the same folder, on disk before it takes the
// file's place in one rename. QSaveFile would do nearly the same, but passes over a failed sync, appends to
// the name (which may be as long as a name can be), keeps no owner and leaves the folder unsynced.
//
// A symbolic link stays; what it points to is replaced, or created; another user's link in a sticky folder
// that everyone may write to is refused. Permissions stay, owner and group where the system allows: a save
// never fails over them, and a group that could not be kept leaves its permissions to no other. A new file's
// follow the umask. Throws FileFailure, the old content then unchanged.
void ReplaceFile(const std::string& path, std::string_view bytes);

}  // namespace rv52
