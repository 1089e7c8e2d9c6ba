#include "support/TestSession.h"

#include "table/LimitTables.h"

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

TestSession::TestSession(Line& line) : session(Ports{line, prompts, view, shell, files, settings}) {
    for (const auto type : {TableType::RACE, TableType::EX}) {
        for (const auto limit : {Limit::Minimum, Limit::Maximum}) {
            const std::string name(LimitFileName(type, limit));
            files.contents["/program/" + name] = ShippedFile(name);
        }
        const std::string name(ChartTemplateFileName(type));
        files.contents["/program/" + name] = ShippedFile(name);
    }
}

}  // namespace rv52::test
