#pragma once

#include <functional>

class QMenuBar;

namespace rv52 {

struct Session;

// A menu command's procedure.
using CommandFunction = void (*)(Session&);

// Fills the menu bar. run is called with the command of the item chosen; exit for the item that closes the
// main window.
void FillMenuBar(QMenuBar& bar, const std::function<void(CommandFunction)>& run,
                 const std::function<void()>& exit);

}  // namespace rv52
