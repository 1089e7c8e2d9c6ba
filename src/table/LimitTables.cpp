#include "table/LimitTables.h"

#include "platform/Failure.h"
#include "table/TableBlock.h"

namespace rv52 {

std::string_view LimitFileName(TableType type, Limit limit) {
    if (type == TableType::EX) return limit == Limit::Minimum ? "RV52_EX_Min.dat" : "RV52_EX_Max.dat";
    return limit == Limit::Minimum ? "RV52_Min.dat" : "RV52_Max.dat";
}

std::optional<AdvanceTable> LoadLimitTable(const Files& files, TableType type, Limit limit) {
    const auto path = files.ProgramFolder() + std::string(LimitFileName(type, limit));
    if (!files.Exists(path)) return std::nullopt;
    try {
        return ParseTableBlock(files.ReadWhole(path), type);
    } catch (const FileFailure&) {
        return std::nullopt;
    }
}

}  // namespace rv52
