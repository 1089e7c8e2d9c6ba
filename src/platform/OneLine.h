#pragma once

#include <string>
#include <string_view>

namespace rv52 {

// A text for the terminal that quotes what somebody gave: control characters, line ends among them, become
// "?".
std::string OneLine(std::string_view text);

}  // namespace rv52
