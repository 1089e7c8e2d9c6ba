#include "simulator/Faults.h"

#include "simulator/FaultKinds.h"
#include "simulator/FaultText.h"

namespace rv52 {

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
        const auto& [asked, k, details] = fault.request;
        const FaultKind& kind = *asked;
        const long before = fault.opportunities;
        const int here = kind.opportunities(step);
        fault.opportunities += here;
        // The last one first, since a strike may remove bytes.
        for (int i = here - 1; i >= 0; --i) {
            const long number = before + i + 1;
            if (!k || number == *k || (kind.lasting && number > *k))
                kind.strike(step, {i, details, fault.random});
        }
    }
}

}  // namespace rv52
