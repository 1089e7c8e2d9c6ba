#pragma once

namespace rv52 {

struct Session;

// Reads the VIN of the connected module, asks for a new one and programs it.
void mnuEditVIN_Click(Session& session);

}  // namespace rv52
