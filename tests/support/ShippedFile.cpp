#include "support/ShippedFile.h"

#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

namespace rv52::test {

std::string ShippedFile(const std::string& name) {
    std::ifstream file(std::string(RV52_DATA_FOLDER "/") + name, std::ios::binary);
    EXPECT_TRUE(file) << name << " does not ship";
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
}

}  // namespace rv52::test
