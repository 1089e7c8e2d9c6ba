#pragma once

#include <string>

namespace rv52::test {

// The content of a file that ships beside the program.
std::string ShippedFile(const std::string& name);

}  // namespace rv52::test
