#pragma once

#include "platform/Line.h"

#include <array>
#include <vector>

namespace rv52 {

// The kernel's counts of line errors on an open serial device, which no toolkit reports any more. A device
// that keeps none (a pseudo-terminal, some adapters) never shows an error.
class LineCounters {
 public:
    // Counts from now on.
    void Start(int device);
    // The conditions whose counts have risen since the last look, each once.
    std::vector<LineCondition> Risen(int device);

 private:
    struct Counts {
        bool known = false;
        std::array<int, 4> of{};
    };
    static Counts Read(int device);

    Counts last_;
};

}  // namespace rv52
