#pragma once

#include <string>

namespace rv52 {

struct Session;

// The splash window as its loading sees it. Until told otherwise the brand caption has its design look:
// "Emberline" in Arial, and there is no logo.
class Splash {
 public:
    virtual ~Splash() = default;

    virtual void SetBrandText(const std::string& text) = 0;
    virtual void SetBrandFont(const std::string& name) = 0;
    virtual void SetBrandSize(double points) = 0;
    virtual void SetBrandStyle(bool bold, bool italic) = 0;
    // Throws Failure when there is no such file or it is no picture.
    virtual void LoadLogo(const std::string& path) = 0;
    virtual void SetApplicationTitle(const std::string& title) = 0;
};

// Reads the branding file, fills BrandingLines and sets up the splash. Afterwards BrandingLines has its first
// line, whatever failed and however that was answered.
void LoadSplash(Session& session, Splash& splash);

}  // namespace rv52
