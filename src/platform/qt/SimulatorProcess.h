#pragma once

#include <QProcess>

#include <string>
#include <string_view>

namespace rv52 {

// A simulated module as a child process that lives as long as this.
class SimulatorProcess {
 public:
    ~SimulatorProcess();

    // Starts one of a type, "RACE" or "EX", and returns the path of its serial device. Throws Failure.
    std::string Start(std::string_view type);

 private:
    // Why there is no module.
    std::string Reason();

    QProcess process_;
};

}  // namespace rv52
