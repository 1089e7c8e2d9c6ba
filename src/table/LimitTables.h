#pragma once

#include "platform/Storage.h"
#include "table/AdvanceTable.h"

#include <optional>
#include <string_view>

namespace rv52 {

enum class Limit { Minimum, Maximum };

// "RV52_Min.dat", "RV52_Max.dat", "RV52_EX_Min.dat" or "RV52_EX_Max.dat".
std::string_view LimitFileName(TableType type, Limit limit);

// The type's limit table from the program's folder; nothing when the file is missing, cannot be read, or
// holds no data block of the type's shape.
std::optional<AdvanceTable> LoadLimitTable(const Files& files, TableType type, Limit limit);

}  // namespace rv52
