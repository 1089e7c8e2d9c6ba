#pragma once

namespace rv52 {

// As the caption, the splash screen and --version tell it. CMakeLists.txt gives the package its own, and
// packaging/check-package compares the two.
inline constexpr const char* kVersion = "8.1";

}  // namespace rv52
