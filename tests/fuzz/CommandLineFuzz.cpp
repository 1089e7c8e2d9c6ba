#include "app/CommandLine.h"
#include "fuzz/Bytes.h"
#include "fuzz/Target.h"
#include "platform/Text.h"
#include "simulator/FaultKinds.h"
#include "simulator/SimulatorOptions.h"

#include <algorithm>
#include <stdexcept>

namespace rv52::fuzz {

namespace {

void RequireOneLine(const std::string& error) {
    const auto isControl = [](unsigned char letter) { return letter < ' ' || letter == 0x7F; };
    Require(!error.empty() && std::ranges::none_of(error, isControl), "a refusal says why, in one line");
}

void TakeAsProgram(std::span<const char* const> arguments) {
    const auto parsed = ParseCommandLine(arguments);
    if (const auto* error = std::get_if<std::string>(&parsed)) return RequireOneLine(*error);
    for (const auto& [commPort, device] : std::get<CommandLine>(parsed).devices)
        Require(commPort >= 1 && commPort <= 255 && !device.empty(), "a port that there is, and its device");
}

void TakeAsSimulator(std::span<const char* const> arguments) {
    try {
        const auto options = ParseSimulatorOptions(arguments);
        const auto& id = options.identification;
        Require(id.empty() || ContainsNoCase(id, "RV52A"), "an identification of a module");
        Require(id.empty() || TypeNamedIn(id) == options.type, "and of its type");
        Require(options.bitsPerSecond.value_or(50) >= 50, "a pace that ends");
        for (const auto& fault : options.faults)
            Require(fault.kind != nullptr && fault.k.value_or(1) >= 1, "a fault that there is");
        Faults(options.faults, options.seed);
    } catch (const std::invalid_argument& refusal) {
        RequireOneLine(refusal.what());
    }
}

}  // namespace

// Arguments with a NUL between them, for either program.
void Target(std::string_view input) {
    Bytes bytes(input);
    std::vector<std::string> texts;
    while (bytes.Any())
        texts.push_back(bytes.Text('\0'));
    std::vector<const char*> arguments;
    for (const auto& text : texts)
        arguments.push_back(text.c_str());
    TakeAsProgram(arguments);
    TakeAsSimulator(arguments);
}

}  // namespace rv52::fuzz
