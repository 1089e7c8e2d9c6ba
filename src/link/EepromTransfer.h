#pragma once

namespace rv52 {

struct Session;

// The table data between the EEPROM buffer and the identified module, in the ranges of the current TableType,
// with their progress panel. All leave the port closed and the panel hidden.

// CommOK when every byte came. Escape ends it.
void ReadEEPROMData(Session& session);

// CommOK when every byte was acknowledged; what was then read back is told by VerifyErrors. Escape ends the
// verifying only, never the programming.
void WriteEEPROMData(Session& session);

// VerifyErrors is 0 only when every byte was looked at where it belongs and was equal.
void VerifyEEPROM(Session& session);

}  // namespace rv52
