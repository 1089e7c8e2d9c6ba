#pragma once

#include "platform/Storage.h"

#include <string>

namespace rv52 {

struct Session;

constexpr int kHighestCommPort = 255;

// "Com1" to "Com255".
std::string CommPortName(int commPort);

// The port number of the settings store; 1 when it is absent, no whole number or outside 1 to 255.
int StoredCommPort(const Settings& settings);

void mnuPortSetup_Click(Session& session);
// An entry of the port list, counted from 0, has been picked.
void cboPort_Click(Session& session, int index);
void cmdPortSelectOK_Click(Session& session);

}  // namespace rv52
