#include "table/TableType.h"

#include "platform/Text.h"

namespace rv52 {

TableType TypeNamedIn(std::string_view text) {
    return ContainsNoCase(text, "EX") ? TableType::EX : TableType::RACE;
}

}  // namespace rv52
