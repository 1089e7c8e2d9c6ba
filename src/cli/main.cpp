#include "cli/Commands.h"
#include "cli/Tool.h"
#include "platform/Text.h"

#include <QCoreApplication>

#include <csignal>
#include <iostream>

namespace {

using namespace rv52;
using namespace rv52::cli;

constexpr const char* kLostOutput = "Cannot write to standard output";

int Number(Status status) {
    return static_cast<int>(status);
}

Status Refuse(Status status, const std::string& why) {
    std::cerr << "rv52: " << OneLine(why) << "\n";
    return status;
}

Status Run(const Options& options) {
    try {
        Tool tool(options);
        tool.Start();
        const auto status = CommandNamed(options.command)(tool);
        return std::cout.flush() ? status : Refuse(Status::File, kLostOutput);
    } catch (const Ending& ending) {
        if (!std::cout.flush()) return Refuse(Status::File, kLostOutput);
        return Refuse(ending.status, ending.what());
    } catch (const FileFailure& failure) {
        return Refuse(Status::File, failure.what());
    } catch (const std::exception& failure) {
        return Refuse(Status::Port, failure.what());
    }
}

}  // namespace

int main(int argc, char** argv) {
    // Whoever reads the output may leave first; a module that is being programmed is not left with them.
    std::signal(SIGPIPE, SIG_IGN);
    const auto read = ReadOptions(argc, argv);
    if (const auto* ended = std::get_if<Status>(&read)) return Number(*ended);
    int one = 1;  // every option is this tool's own
    const QCoreApplication application(one, argv);
    return Number(Run(std::get<Options>(read)));
}
