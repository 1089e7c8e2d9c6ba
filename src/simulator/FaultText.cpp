#include "simulator/FaultText.h"

#include "simulator/FaultKinds.h"
#include "simulator/ModuleEeprom.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <optional>
#include <stdexcept>
#include <utility>

namespace rv52 {

namespace {

// False when it has been given before.
template <class Value>
bool Give(std::optional<Value>& place, long number) {
    return !std::exchange(place, static_cast<Value>(number)).has_value();
}

// A detail as it is written, the whole numbers that it may be, and where they go.
struct DetailText {
    std::string_view name;
    FaultDetail detail;
    long lowest;
    long highest;
    bool (*give)(FaultDetails& details, long number);
};

constexpr DetailText kDetails[] = {
    {"for", FaultDetail::Duration, 0, 3'600'000,
     [](FaultDetails& details, long number) { return Give(details.duration, number); }},
    {"at", FaultDetail::Address, 0, ModuleEeprom::kSize - 1,
     [](FaultDetails& details, long number) { return Give(details.address, number); }},
    {"character", FaultDetail::Character, 1, 10'000,
     [](FaultDetails& details, long number) { return Give(details.character, number); }},
    {"bit", FaultDetail::Bit, 0, 7,
     [](FaultDetails& details, long number) { return Give(details.bit, number); }}};

[[noreturn]] void Refuse(const FaultKind& kind, const std::string& reason) {
    throw std::invalid_argument("fault " + std::string(kind.name) + ": " + reason);
}

std::string Quoted(std::string_view text) {
    return "\"" + std::string(text) + "\"";
}

long ParseNumber(const FaultKind& kind, std::string_view what, std::string_view text, long lowest,
                 long highest) {
    long number = 0;
    const auto* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    if (result.ec == std::errc{} && result.ptr == end && number >= lowest && number <= highest) return number;
    const bool bounded = highest < std::numeric_limits<long>::max();
    Refuse(kind, std::string(what) + Quoted(text) + " is no whole number from " + std::to_string(lowest) +
                     (bounded ? " to " + std::to_string(highest) : ""));
}

std::string DetailsOf(const FaultKind& kind) {
    std::string names;
    for (const auto& known : kDetails)
        if (kind.Takes(known.detail)) names += (names.empty() ? "" : ", ") + std::string(known.name);
    return names.empty() ? "no details" : names;
}

void ParseDetail(FaultRequest& request, std::string_view text) {
    const auto& kind = *request.kind;
    const auto name = text.substr(0, text.find('='));
    const auto* found = std::ranges::find(kDetails, name, &DetailText::name);
    if (found == std::end(kDetails) || !kind.Takes(found->detail))
        Refuse(kind, Quoted(text) + " is none of its details; it takes " + DetailsOf(kind));
    if (name.size() == text.size())
        Refuse(kind, Quoted(text) + " wants a number, as in " + Quoted(std::string(name) + "=5"));
    const long number = ParseNumber(kind, std::string(name) + " ", text.substr(name.size() + 1),
                                    found->lowest, found->highest);
    if (!found->give(request.details, number)) Refuse(kind, Quoted(name) + " is given twice");
}

}  // namespace

FaultRequest ParseFault(std::string_view text) {
    auto comma = std::min(text.find(','), text.size());
    const auto first = text.substr(0, comma);
    const auto equals = first.find('=');
    FaultRequest request{&FaultNamed(first.substr(0, equals))};
    if (equals != std::string_view::npos)
        request.k =
            ParseNumber(*request.kind, "", first.substr(equals + 1), 1, std::numeric_limits<long>::max());
    while (comma < text.size()) {
        text.remove_prefix(comma + 1);
        comma = std::min(text.find(','), text.size());
        ParseDetail(request, text.substr(0, comma));
    }
    return request;
}

std::string DescribeFaults() {
    std::string lines;
    for (const auto& kind : FaultKinds()) {
        std::string name(kind.name);
        name.resize(std::max<std::size_t>(name.size(), 22), ' ');
        lines += "  " + name + " " + std::string(kind.effect) + "\n";
    }
    return lines;
}

}  // namespace rv52
