#pragma once

#include "module/EepromMap.h"
#include "table/AdvanceTable.h"
#include "table/ModuleParameters.h"

namespace rv52 {

// Degrees of advance that one count of a table byte or a timing byte stands for.
constexpr double kDegreesPerCount = 0.176;

// The image of a module of this type as a table of the type, unrounded, and as parameters; parameters out of
// range are clamped. Every byte is accepted.
AdvanceTable DecodeEepromImage(const EepromBuffer& buffer, TableType type, ModuleParameters& parameters);

// Writes the target's table region and the parameter block, and nothing else. Values are rounded to the
// nearest count, halves to even, and clamped to what the module accepts. An EX table gives a RACE module its
// rows MAP 16 to 30; a RACE table for an EX module throws std::logic_error with the buffer unchanged.
void EncodeEepromImage(const AdvanceTable& table, const ModuleParameters& parameters, TableType target,
                       EepromBuffer& buffer);

void ClearEEPROMBuffer(EepromBuffer& buffer);

}  // namespace rv52
