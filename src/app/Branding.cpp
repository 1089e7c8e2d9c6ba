#include "app/Branding.h"

namespace rv52 {

std::vector<std::string> DefaultBrandingLines() {
    return {"Emberline",           "Emberline Ignition Works",
            "14 Foundry Lane",     "Harrowgate Mills, NY 00000",
            "Phone: 555 010 0152", "www.emberline.example"};
}

}  // namespace rv52
