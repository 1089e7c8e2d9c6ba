#pragma once

#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>

namespace rv52::test {

// The content of a file that ships beside the program.
inline std::string ShippedFile(const std::string& name) {
    std::ifstream file(std::string(RV52_DATA_FOLDER "/") + name, std::ios::binary);
    EXPECT_TRUE(file) << name << " does not ship";
    return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace rv52::test
