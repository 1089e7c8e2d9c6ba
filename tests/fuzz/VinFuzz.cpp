#include "fuzz/Target.h"
#include "link/commands/LinkProcedures.h"
#include "platform/CodePage.h"

namespace rv52::fuzz {

// The input as what a module holds, and as what a user types.
void Target(std::string_view input) {
    const auto shown = FromCodePage(input);
    Require(ToCodePage(shown) == input, "every code comes back");
    Require(CharacterCount(shown) == input.size(), "a character for each code");
    Require(VinCodes(shown).has_value() == (input.size() == 17), "what is shown of a VIN can be confirmed");

    const auto codes = ToCodePage(input);
    Require(!codes || FromCodePage(*codes) == input, "a typed text is sent as it is or not at all");
    const auto vin = VinCodes(input);
    Require(!vin || vin->size() == 17, "a VIN has 17 codes");
    Require(vin.has_value() == (codes && codes->size() == 17), "and any 17 are one");
}

}  // namespace rv52::fuzz
