#include "fuzz/Target.h"
#include "support/Recorders.h"
#include "table/LimitTables.h"
#include "table/TableBlock.h"

namespace rv52::fuzz {

void Target(std::string_view input) {
    static test::MemoryFiles files;
    for (const auto type : {TableType::RACE, TableType::EX}) {
        files.contents[files.folder + std::string(LimitFileName(type, Limit::Maximum))] = input;
        const auto table = LoadLimitTable(files, type, Limit::Maximum);
        if (table) Require(ParseTableBlock(FormatTableBlock(*table), type) == table, "it reads back");
    }
}

}  // namespace rv52::fuzz
