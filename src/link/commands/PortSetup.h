#pragma once

#include "platform/Storage.h"

namespace rv52 {

struct Session;

// The port number of the settings store; 1 when it is absent, no whole number or outside 1 to 255.
int StoredCommPort(const Settings& settings);

void mnuPortSetup_Click(Session& session);
// An entry of the port list, counted from 0, has been picked.
void cboPort_Click(Session& session, int index);
void cmdPortSelectOK_Click(Session& session);

}  // namespace rv52
