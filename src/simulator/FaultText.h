#pragma once

#include "simulator/FaultRequest.h"

#include <string>
#include <string_view>

namespace rv52 {

// Reads "NAME" or "NAME=K", then any of ",for=MS", ",at=ADDRESS", ",character=N" and ",bit=N" that the kind
// takes. Throws std::invalid_argument with one line that tells what is wrong.
FaultRequest ParseFault(std::string_view text);

// A line for each fault: its name and what it does.
std::string DescribeFaults();

}  // namespace rv52
