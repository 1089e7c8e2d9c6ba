#pragma once

#include "table/AdvanceTable.h"
#include "table/SliderScale.h"

#include <cstdint>

namespace rv52 {

struct Session;

// What frmNewTable works on while it is open. The two settings are those of the module's own switches, each
// 0 to 9: the slope tells where between the minimum and the maximum the new table lies, the timing shifts
// all of it by its distance from 5 in degrees.
struct NewTable {
    std::int16_t AdvSlope = 0;
    std::int16_t InitTiming = 0;
    AdvanceTable MinTable{TableType::RACE};
    AdvanceTable MaxTable{TableType::RACE};
};

constexpr SliderScale kSwitchScale{0, 9, 1, 9, 1};
constexpr std::int16_t SettingAt(int position) {
    return static_cast<std::int16_t>(kSwitchScale.ValueAt(position));
}

// Where the timing slider stands when it is moved to a position: for EX not above position 4, so that no EX
// table is shifted towards more advance.
int TimingSliderStop(TableType type, int position);

// One cell of a new table in degrees, 0 to 45, unrounded.
double NewAdvance(double minimum, double maximum, int advSlope, int initTiming);

// The File menu's New Table.
void mnuNewTable_Click(Session& session);

// Asks and prepares everything before the dialog is shown; false when it is not to be shown.
bool OpenNewTable(Session& session, NewTable& newTable);

// Makes the table of the dialog's settings the current one and shows it. The values come from the limits
// alone: nothing of an earlier run is used.
void CreateNewTable(Session& session, const NewTable& newTable);

}  // namespace rv52
