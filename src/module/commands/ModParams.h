#pragma once

#include "table/ModuleParameters.h"
#include "table/SliderScale.h"

#include <string>

namespace rv52 {

struct Session;

// What the module parameters dialog does. Every control writes its parameter the moment it changes; nothing
// here touches the flag byte, the table or its type.

void mnuEditModParams_Click(Session& session);

constexpr int kLowestRpmCount = ModuleParameters::kRPMLimit.lowest / ModuleParameters::kRpmStep;
constexpr int kHighestRpmCount = ModuleParameters::kRPMLimit.highest / ModuleParameters::kRpmStep;
constexpr SliderScale kRPMLimitScale{kLowestRpmCount, kHighestRpmCount, 10,
                                     kLowestRpmCount + kHighestRpmCount, ModuleParameters::kRpmStep};
constexpr SliderScale kInitTimingScale{0, 10, 2, 5, 1};
constexpr SliderScale kRearOffsetScale{0, 10, 2, 5, 1};
constexpr SliderScale kCrankRevsScale{0, 3, 2, 3, 1};

// What opening the dialog rewrites: parameters whose frame is out of sight take their neutral value.
void OpenModParams(Session& session);

// A slider has moved to a position, by mouse or by key.
void sldRPMLimit_Change(Session& session, int position);
// The position that the slider has to take: an EX table's initial timing does not rise above 0.
int sldInitTiming_Change(Session& session, int position);
void sldRearOffset_Change(Session& session, int position);
void sldCrankRevs_Change(Session& session, int position);

void chkFixedRPMLimit_Click(Session& session, bool ticked);
void chkFixedInitTiming_Click(Session& session, bool ticked);
void chkTachEnable_Click(Session& session, bool ticked);

void optEEPROMAdvTable_Click(Session& session);
// Warns when the table in EEPROM was in force until now.
void optFLASHAdvTable_Click(Session& session);

// The focus leaves the VSS box, whose text is given: a value out of range becomes the nearest bound, with a
// warning.
void txtVSSFreq_Validate(Session& session, const std::string& text);

}  // namespace rv52
