#pragma once

namespace rv52 {

struct Session;

// The layout pass: places the chart and the grid, closes the port and applies the serial settings anew.
void Form_Resize(Session& session);

// The window's size has changed: as Form_Resize, but while a command runs the port is its own, and the
// settings wait until it has ended.
void WindowResized(Session& session);

// The fixed serial settings stand in Line.h and go to the port each time it is opened; with them the count of
// line errors starts from 0.
void RestartLineErrorCount(Session& session);

}  // namespace rv52
