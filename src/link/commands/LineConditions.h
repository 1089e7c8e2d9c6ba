#pragma once

namespace rv52 {

struct Session;

// From now on the line's conditions are counted and shown; the third since the serial settings were last
// applied, and every later one, closes the port before its box.
void HandleLineConditions(Session& session);

}  // namespace rv52
