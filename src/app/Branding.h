#pragma once

#include <string>
#include <vector>

namespace rv52 {

// The branding lines of a program without a branding file: the brand, then the maker's contact lines.
std::vector<std::string> DefaultBrandingLines();

}  // namespace rv52
