#include "simulator/Faults.h"

#include "simulator/FaultKinds.h"

#include <algorithm>
#include <charconv>
#include <stdexcept>

namespace rv52 {

namespace {

const FaultKind& KindNamed(std::string_view name) {
    std::string known;
    for (const auto& kind : FaultKinds()) {
        if (kind.name == name) return kind;
        if (!known.empty()) known += ", ";
        known += kind.name;
    }
    throw std::invalid_argument("unknown fault \"" + std::string(name) + "\"; there are " + known);
}

long ParseCount(std::string_view name, std::string_view text) {
    long count = 0;
    const auto* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, count);
    if (result.ec != std::errc{} || result.ptr != end || count < 1)
        throw std::invalid_argument("fault " + std::string(name) + ": \"" + std::string(text) +
                                    "\" is no whole number from 1");
    return count;
}

}  // namespace

FaultRequest ParseFault(std::string_view text) {
    const auto equals = text.find('=');
    const auto name = text.substr(0, equals);
    FaultRequest request{&KindNamed(name), std::nullopt};
    if (equals != std::string_view::npos) request.k = ParseCount(name, text.substr(equals + 1));
    return request;
}

std::string DescribeFaults() {
    std::string lines;
    for (const auto& kind : FaultKinds()) {
        std::string name(kind.name);
        name.resize(std::max<std::size_t>(name.size(), 21), ' ');
        lines += "  " + name + " " + std::string(kind.effect) + "\n";
    }
    return lines;
}

Faults::Faults(const std::vector<FaultRequest>& requests, std::uint64_t seed) {
    for (const auto& request : requests)
        Add(request, seed);
}

Faults::Faults(std::initializer_list<std::string_view> requests, std::uint64_t seed) {
    for (const auto text : requests)
        Add(ParseFault(text), seed);
}

// Each fault draws from its own numbers, so that one more does not change what the others do.
void Faults::Add(const FaultRequest& request, std::uint64_t seed) {
    std::seed_seq numbers{static_cast<std::uint32_t>(seed), static_cast<std::uint32_t>(seed >> 32),
                          static_cast<std::uint32_t>(active_.size())};
    active_.push_back({request, std::mt19937_64(numbers)});
}

void Faults::Shape(ModuleStep& step) {
    for (auto& fault : active_) {
        const auto& [kind, k] = fault.request;
        const long before = fault.opportunities;
        const int here = kind->opportunities(step);
        fault.opportunities += here;
        // The last one first, since a strike may remove bytes.
        for (int i = here - 1; i >= 0; --i) {
            const long number = before + i + 1;
            if (!k || number == *k || (kind->lasting && number > *k)) kind->strike(step, i, fault.random);
        }
    }
}

}  // namespace rv52
