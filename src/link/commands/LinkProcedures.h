#pragma once

#include "module/EepromMap.h"

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace rv52 {

struct Session;

// What the commands do with the connected module, each procedure over the EEPROM buffer and the rest of the
// working state. How a byte travels is ModuleLink's business. All leave the port closed and the panel hidden,
// and report through CommOK, which they clear first: true says that all was answered, and where the module
// acknowledges, acknowledged.

// Who is there: FirmwareId, and EchoMode and TableType when the reply tells them. CommOK when a text with at
// least one printable character ended in time.
void ReadFirmwareID(Session& session);

// Points the module at an address.
void SetEEPROMAddress(Session& session, EepromAddress address);

// The ranges of the current TableType, from the module into the cleared buffer. Escape ends it.
void ReadEEPROMData(Session& session);

// The ranges of the current TableType, from the buffer into the module, and then VerifyEEPROM. CommOK when
// every byte was acknowledged, whatever the verify tells. Nothing stops the programming.
void WriteEEPROMData(Session& session);

// VerifyErrors is 0 only when every byte was read back equal, from an address that the module acknowledged. A
// verify that ended early, by Escape too, or that the module did not point at its address, has one error
// more.
void VerifyEEPROM(Session& session);

// The module's codes for a vehicle identification number, one byte for each of its 17 characters; nothing
// when it has another length, or a character that has no code.
std::optional<std::string> VinCodes(std::string_view vin);

// The same for the VIN, without a panel. Vin keeps its old value unless every byte came.
void ReadVINData(Session& session);
void WriteVINData(Session& session);
void VerifyVIN(Session& session);

// Serves the window for that long.
void DelayTimer(Session& session, std::chrono::milliseconds duration);

}  // namespace rv52
