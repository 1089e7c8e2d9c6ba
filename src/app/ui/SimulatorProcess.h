#pragma once

#include "table/TableType.h"

#include <QProcess>

#include <string>

namespace rv52 {

// A simulated module as a child process that lives as long as this.
class SimulatorProcess {
 public:
    ~SimulatorProcess();

    // Starts it and returns the path of its serial device. Throws Failure.
    std::string Start(TableType type);

 private:
    // Why there is no module.
    std::string Reason();

    QProcess process_;
};

}  // namespace rv52
