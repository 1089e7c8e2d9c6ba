#include "platform/Failure.h"
#include "simulator/SimulatorHost.h"

#include <cstdio>
#include <stdexcept>

namespace {

using namespace rv52;

enum Status { kServed = 0, kCannotServe = 1, kBadOption = 2 };

int Refuse(const char* error, Status status) {
    std::fprintf(stderr, "rv52_simulator: %s\n", error);
    return status;
}

int Run(const SimulatorOptions& options) {
    SimulatorHost host(options);
    std::printf("%s\n", host.DevicePath().c_str());
    std::fflush(stdout);
    return host.Serve() ? kServed : kCannotServe;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        const auto options = ParseSimulatorOptions({argv + 1, static_cast<std::size_t>(argc - 1)});
        if (!options.help) return Run(options);
        std::fputs(SimulatorUsage().c_str(), stdout);
        return kServed;
    } catch (const std::invalid_argument& error) {
        return Refuse(error.what(), kBadOption);
    } catch (const FileFailure& failure) {
        return Refuse(failure.what(), kBadOption);
    } catch (const std::exception& error) {
        return Refuse(error.what(), kCannotServe);
    }
}
