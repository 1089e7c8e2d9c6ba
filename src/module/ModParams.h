#pragma once

#include <string>

namespace rv52 {

struct Session;

// What the module parameters dialog does. Every control writes its parameter the moment it changes; nothing
// here touches the flag byte, the table or its type.

void mnuEditModParams_Click(Session& session);

// A slider's positions count from its top, where the highest value sits: position + value / unit is constant.
struct SliderScale {
    int first;     // position at the top
    int last;      // position at the bottom
    int pageStep;  // positions
    int sum;       // position + value / unit
    int unit;      // of the parameter, for one position

    constexpr int ValueAt(int position) const { return (sum - position) * unit; }
    // The nearest position, halves to the even one, within the slider.
    int PositionOf(int value) const;
};

constexpr SliderScale kRPMLimitScale{30, 99, 10, 129, 100};
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
