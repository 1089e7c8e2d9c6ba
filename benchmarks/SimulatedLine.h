#pragma once

#include "table/TableType.h"

#include <QProcess>

#include <string>

namespace rv52::bench {

// A simulated module in a process of its own, at the pace of the real line.
class SimulatedLine {
 public:
    SimulatedLine(TableType type, bool echo);
    ~SimulatedLine();
    SimulatedLine(const SimulatedLine&) = delete;
    SimulatedLine& operator=(const SimulatedLine&) = delete;

    const std::string& Device() const { return device_; }

 private:
    QProcess process_;
    std::string device_;
};

}  // namespace rv52::bench
