#include "app/Branding.h"
#include "app/SplashBranding.h"
#include "fuzz/FuzzedSession.h"
#include "fuzz/Target.h"

namespace rv52::fuzz {

class NoSplash : public Splash {
 public:
    void SetBrandText(const std::string&) override {}
    void SetBrandFont(const std::string&) override {}
    void SetBrandSize(double points) override { Require(points > 0, "a size is above 0"); }
    void SetBrandStyle(bool, bool) override {}
    void LoadLogo(const std::string&) override {}
    void SetApplicationTitle(const std::string&) override {}
};

void Target(std::string_view input) {
    static FuzzedSession desk;
    desk.parts.files.contents[desk.parts.files.folder + kBrandingFileName] = input;
    desk.session.state.BrandingLines.clear();
    desk.user.told.clear();
    NoSplash splash;
    LoadSplash(desk.session, splash);
    Require(!desk.session.state.BrandingLines.empty(), "there is always a brand");
}

}  // namespace rv52::fuzz
