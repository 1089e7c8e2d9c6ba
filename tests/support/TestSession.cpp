#include "support/TestSession.h"

#include "table/LimitTables.h"

namespace rv52::test {

TestSession::TestSession(Line& line) : session(Ports{line, prompts, view, shell, files, settings, printer}) {
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
