#pragma once

#include "link/WireSteps.h"
#include "module/EepromMap.h"

namespace rv52 {

struct Session;

// The module's commands. Each opens the port if it is closed and reports through CommOK, which it clears
// first: true says that the module answered in time and, where it acknowledges, acknowledged. Failures of the
// line ask on the spot; whatever is answered, CommOK is then false and the port closed.

// Who is there: FirmwareId, EchoMode and TableType. CommOK when a text with at least one printable character
// ended within a second of the request. Leaves the port closed.
void ReadFirmwareID(Session& session);

// Points the module at an address. Leaves the port closed.
void SetEEPROMAddress(Session& session, EepromAddress address);

// The byte at the module's address; nothing when CommOK is false. Leaves the port open.
std::optional<std::uint8_t> ReadEEPROM(Session& session);

// Programs one byte at the module's address; true when it was acknowledged after this many echoes. The port
// must be open, and stays open after a success. Part of a longer procedure, whose CommOK it leaves alone.
bool WriteEEPROM(Session& session, std::uint8_t byte, int echoes, const char* timeoutText = kReplyTimeout);

// A write is echoed twice: the command and the byte.
constexpr int kWriteEchoes = 2;

}  // namespace rv52
