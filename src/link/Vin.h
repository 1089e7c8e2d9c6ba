#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace rv52 {

struct Session;

// The vehicle identification number in the module's EEPROM, 17 characters of the single-byte code page.
// All three leave the port closed.

// The module's codes for a VIN; nothing when it has not exactly 17 characters or one that has no code.
std::optional<std::string> VinCodes(std::string_view vin);

// Vin and CommOK. Vin keeps its old value unless every byte came. Escape ends it.
void ReadVINData(Session& session);

// Programs Vin. CommOK when all 17 bytes were acknowledged; what was then read back is told by VerifyErrors.
void WriteVINData(Session& session);

// VerifyErrors is 0 only when the module was seen to hold the VIN's bytes of the buffer.
void VerifyVIN(Session& session);

}  // namespace rv52
