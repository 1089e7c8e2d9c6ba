#pragma once

#include "table/AdvanceTable.h"

#include <optional>
#include <string>
#include <string_view>

namespace rv52 {

// The table data block of ".tbl" and ".dat" files; its syntax is in docs/file-formats.md.

// The block as text, CR LF after every line, every double written so that it reads back the same.
std::string FormatTableBlock(const AdvanceTable& table);

// Reads the block, passing over lines that begin with "!" or hold blanks alone. Nothing when it is malformed
// or its counts are not those of the type.
std::optional<AdvanceTable> ParseTableBlock(std::string_view text, TableType type);

// The line, counted from 1, that keeps a text from being a block of the type: one that is not what belongs
// there, or the last one of a text that ends too early. 0 when nothing does.
int MalformedLine(std::string_view text, TableType type);

}  // namespace rv52
