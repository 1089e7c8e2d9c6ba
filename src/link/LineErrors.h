#pragma once

#include "platform/Line.h"

#include <string_view>

namespace rv52 {

struct Session;

// "Framing error." and the like: one fixed text for each of the six conditions.
std::string_view Describe(LineCondition condition);

// From now on the line's conditions are counted and shown; the third since the serial settings were last
// applied, and every later one, closes the port before its box.
void HandleLineErrors(Session& session);

}  // namespace rv52
