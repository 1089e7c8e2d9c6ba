#include "simulator/SimulatorOptions.h"

#include "platform/Text.h"
#include "simulator/FaultText.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <stdexcept>

namespace rv52 {

namespace {

constexpr int kSlowest = 50;  // bit/s
constexpr int kFastest = 4'000'000;

[[noreturn]] void Refuse(std::string_view option, std::string_view value, std::string_view wanted) {
    throw std::invalid_argument(std::string(option) + ": \"" + std::string(value) + "\" is not " +
                                std::string(wanted));
}

template <class Number>
Number ParseNumber(std::string_view option, std::string_view value, Number lowest, Number highest) {
    Number number{};
    const auto* end = value.data() + value.size();
    const auto result = std::from_chars(value.data(), end, number);
    if (result.ec != std::errc{} || result.ptr != end || number < lowest || number > highest)
        Refuse(option, value,
               "a whole number from " + std::to_string(lowest) + " to " + std::to_string(highest));
    return number;
}

template <class Choice>
Choice Choose(std::string_view option, std::string_view value, std::string_view first, Choice asFirst,
              std::string_view second, Choice asSecond) {
    if (value == first) return asFirst;
    if (value == second) return asSecond;
    Refuse(option, value, std::string(first) + " or " + std::string(second));
}

std::string NonEmpty(std::string_view option, std::string_view value) {
    if (value.empty()) Refuse(option, value, "a file name");
    return std::string(value);
}

void Apply(SimulatorOptions& options, std::string_view option, std::string_view value) {
    if (option == "--type")
        options.type = Choose(option, value, "RACE", TableType::RACE, "EX", TableType::EX);
    else if (option == "--id")
        options.identification = value;
    else if (option == "--echo")
        options.echo = Choose(option, value, "on", true, "off", false);
    else if (option == "--image")
        options.imagePath = NonEmpty(option, value);
    else if (option == "--pace")
        options.bitsPerSecond = ParseNumber(option, value, kSlowest, kFastest);
    else if (option == "--fault")
        options.faults.push_back(ParseFault(value));
    else if (option == "--seed")
        options.seed =
            ParseNumber<std::uint64_t>(option, value, 0, std::numeric_limits<std::uint64_t>::max());
    else if (option == "--trace")
        options.tracePath = NonEmpty(option, value);
}

constexpr std::string_view kWithValue[] = {"--type", "--id",    "--echo", "--image",
                                           "--pace", "--fault", "--seed", "--trace"};

bool IsPrintable(char character) {
    return character >= ' ' && character <= '~';
}

SimulatorOptions Parse(std::span<const char* const> arguments) {
    SimulatorOptions options;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string_view argument = arguments[i];
        if (argument == "--help") {
            options.help = true;
            continue;
        }
        const auto sign = argument.find('=');
        const auto option = argument.substr(0, sign);
        if (std::find(std::begin(kWithValue), std::end(kWithValue), option) == std::end(kWithValue))
            throw std::invalid_argument("unknown option \"" + std::string(argument) + "\"");
        if (sign != std::string_view::npos)
            Apply(options, option, argument.substr(sign + 1));
        else if (i + 1 < arguments.size())
            Apply(options, option, arguments[++i]);
        else
            throw std::invalid_argument(std::string(option) + " wants a value");
    }
    if (!options.identification.empty())
        options.identification = CompleteIdentification(options.identification, options.type);
    return options;
}

}  // namespace

SimulatorOptions ParseSimulatorOptions(std::span<const char* const> arguments) {
    try {
        return Parse(arguments);
    } catch (const std::invalid_argument& refusal) {
        throw std::invalid_argument(OneLine(refusal.what()));
    }
}

std::string CompleteIdentification(std::string_view text, TableType type) {
    if (!std::all_of(text.begin(), text.end(), IsPrintable))
        Refuse("--id", text, "a text of printable ASCII characters");
    std::string complete(text);
    const bool namesEx = TypeNamedIn(text) == TableType::EX;
    if (namesEx && type != TableType::EX) Refuse("--id", text, "a RACE module's: \"EX\" in it makes it EX");
    if (!namesEx && type == TableType::EX) complete = "EX " + complete;
    if (text.find("RV52A") == std::string_view::npos) complete = "RV52A " + complete;
    return complete;
}

std::string SimulatorUsage() {
    return "usage: rv52_simulator [OPTION]...\n"
           "A simulated RV52A ignition module on a serial device of its own. The first line printed is the\n"
           "device's path; it serves until it is ended by a signal.\n"
           "\n"
           "  --type RACE|EX    the module's type (RACE)\n"
           "  --id TEXT         its identification; RV52A, and EX for EX, are added where TEXT lacks them\n"
           "  --echo on|off     whether it echoes every byte that it receives (on)\n"
           "  --image FILE      keep its EEPROM in FILE: 512 bytes, created if missing\n"
           "  --pace BAUD       take a real line's time for every byte, for example 56000\n"
           "  --fault NAME[=K]  fail at the Kth opportunity, the first being 1; without K at every one;\n"
           "                    repeatable. The details that are named below with their defaults may "
           "follow:\n"
           "                    power-cycle=300,for=500,at=16\n"
           "  --seed N          choose other random bits, bytes and addresses in faults (1)\n"
           "  --trace FILE      write each byte with its time and direction to FILE\n"
           "  --help            print this\n"
           "\n"
           "Faults:\n" +
           DescribeFaults();
}

}  // namespace rv52
