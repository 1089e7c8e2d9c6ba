#include "table/TableFile.h"

#include "platform/Failure.h"
#include "platform/Text.h"
#include "table/Numbers.h"
#include "table/TableBlock.h"

#include <array>
#include <cstdint>
#include <limits>
#include <variant>

namespace rv52 {

namespace {

struct Number {
    std::int16_t ModuleParameters::*field;
    Range range;
};
using Flag = bool ModuleParameters::*;
struct Type {};

struct Key {
    std::string_view name;
    std::size_t writtenAs;  // which line of the section it is, the heading being line 0
    std::variant<Number, Flag, Type> meaning;
};

// In the order in which they are looked for in a line.
constexpr std::array kKeys{
    Key{"!InitialTiming", 1, Number{&ModuleParameters::InitialTiming, ModuleParameters::kTiming}},
    Key{"!RearOffset", 2, Number{&ModuleParameters::RearOffset, ModuleParameters::kTiming}},
    Key{"!CrankRevs", 4, Number{&ModuleParameters::CrankRevs, ModuleParameters::kCrankRevs}},
    Key{"!FixedLimFlag", 5, &ModuleParameters::FixedLimFlag},
    Key{"!SelEEPROMTblFlag", 6, &ModuleParameters::SelEEPROMTblFlag},
    Key{"!FixedInitialTmgFlag", 7, &ModuleParameters::FixedInitialTmgFlag},
    Key{"!TachEnableFlag", 9, &ModuleParameters::TachEnableFlag},
    Key{"!RPMLimit", 3, Number{&ModuleParameters::RPMLimit, ModuleParameters::kRPMLimit}},
    Key{"!VSSFreq", 8, Number{&ModuleParameters::VSSFreq, ModuleParameters::kVSSFreq}},
    Key{"!Version", 10, Type{}},
};

// Calls the overload for the key's meaning.
template <class... Cases>
struct Match : Cases... {
    using Cases::operator()...;
};
template <class... Cases>
Match(Cases...) -> Match<Cases...>;

std::string ValueText(const Key& key, TableType type, const ModuleParameters& parameters) {
    return std::visit(Match{
                          [&](const Number& number) { return std::to_string(parameters.*number.field); },
                          [&](Flag flag) { return std::string(parameters.*flag ? "True" : "False"); },
                          [&](Type) { return std::string(ToText(type)); },
                      },
                      key.meaning);
}

// What follows a line's first colon and the blanks behind it, tabs among them: an editor may have set them.
std::string_view ValueOf(std::string_view line) {
    const auto colon = line.find(':');
    const auto start = colon == std::string_view::npos ? colon : line.find_first_not_of(" \t", colon + 1);
    return start == std::string_view::npos ? std::string_view{} : line.substr(start);
}

std::int16_t ReadNumber(const Key& key, const Range& range, std::string_view value) {
    using Limits = std::numeric_limits<std::int16_t>;
    const double number = RoundHalfEven(LeadingNumber(value).value_or(0));
    if (number < Limits::min() || number > Limits::max())
        throw Failure("The value of " + std::string(key.name) + " is no 16-bit whole number.");
    return static_cast<std::int16_t>(range.Clamp(static_cast<int>(number)));
}

}  // namespace

std::string FormatTableFile(const AdvanceTable& table, const ModuleParameters& parameters) {
    std::array<std::string, kKeys.size() + 1> lines{"!Module Parameters"};
    for (const auto& key : kKeys)
        lines[key.writtenAs] = std::string(key.name) + ": " + ValueText(key, table.Type(), parameters);

    auto text = FormatTableBlock(table);
    for (const auto& line : lines)
        text += line + "\r\n";
    return text;
}

TableFileParameters UnstatedParameters(const ModuleParameters& current) {
    TableFileParameters unstated{TableType::RACE, current};
    auto& parameters = unstated.parameters;
    parameters.InitialTiming = 0;
    parameters.RearOffset = 0;
    parameters.CrankRevs = 0;
    parameters.FlagByte = 0;
    parameters.RPMLimit = 5700;
    parameters.VSSFreq = 1424;
    return unstated;
}

std::string_view ParameterName(std::size_t key) {
    return kKeys.at(key).name.substr(1);
}

std::vector<ParameterLine> FindParameters(std::string_view text) {
    std::vector<ParameterLine> found;
    for (int number = 1; !text.empty(); ++number) {
        const auto line = TakeLine(text);
        if (line.find('!') == std::string_view::npos) continue;
        for (std::size_t key = 0; key < kKeys.size(); ++key)
            if (ContainsNoCase(line, kKeys[key].name)) found.push_back({key, ValueOf(line), number});
    }
    return found;
}

void ApplyParameter(const ParameterLine& line, TableFileParameters& to) {
    const auto& key = kKeys.at(line.key);
    std::visit(Match{
                   [&](const Number& number) {
                       to.parameters.*number.field = ReadNumber(key, number.range, line.value);
                   },
                   [&](Flag flag) { to.parameters.*flag = ContainsNoCase(line.value, "True"); },
                   [&](Type) { to.type = TypeNamedIn(line.value); },
               },
               key.meaning);
}

}  // namespace rv52
