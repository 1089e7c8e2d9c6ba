#include "app/Branding.h"
#include "app/SplashBranding.h"
#include "core/SessionTest.h"
#include "platform/Failure.h"
#include "table/Numbers.h"

namespace rv52 {
namespace {

using Texts = std::vector<std::string>;

// Notes what it is told, in words.
class RecordingSplash : public Splash {
 public:
    void SetBrandText(const std::string& text) override { told.push_back("text " + text); }
    void SetBrandFont(const std::string& name) override { told.push_back("font " + name); }
    void SetBrandSize(double points) override { told.push_back("size " + ShortestDecimal(points)); }
    void SetBrandStyle(bool bold, bool italic) override {
        told.push_back(std::string("style") + (bold ? " bold" : "") + (italic ? " italic" : ""));
    }
    void LoadLogo(const std::string& path) override {
        if (path == missingLogo) throw Failure("no picture");
        told.push_back("logo " + path);
    }
    void SetApplicationTitle(const std::string& title) override { told.push_back("title " + title); }

    std::string missingLogo;
    Texts told;
};

class SplashBrandingTest : public test::SessionTest {
 protected:
    void Load(const std::string& file) {
        files["/program/Corvane_RV52.cfg"] = file;
        LoadSplash(session, splash_);
    }
    RecordingSplash splash_;
    const Texts& branding_ = session.state.BrandingLines;
};

constexpr const char* kTitle = "title Corvane_RV52_Splash";
constexpr const char* kEndsEarly =
    "The branding file Corvane_RV52.cfg ends before its second section is closed by a line with \"!\".";

TEST_F(SplashBrandingTest, HasDefaultsWithoutAFile) {
    LoadSplash(session, splash_);
    EXPECT_EQ(splash_.told, (Texts{"text Emberline", "font Arial", "size 48", "style bold italic",
                                   "logo /program/Emberline_Logo.gif", kTitle}));
    EXPECT_EQ(branding_, DefaultBrandingLines());
    EXPECT_EQ(branding_.size(), 6U);
}

TEST_F(SplashBrandingTest, DressesTheSplashAsTheFileSays) {
    Load("!\nNord\nLiberation Sans\n 12.5pt\nsemiBOLD\nNull\nsix\nseven\n!\nNordwerk\nStreet\nTown\n!\n");
    EXPECT_EQ(splash_.told, (Texts{"text Nord", "font Liberation Sans", "size 12.5", "style bold", kTitle}));
    EXPECT_EQ(branding_, (Texts{"Nordwerk", "Street", "Town"}));

    splash_.told.clear();
    Load("\n\n1\nupright\nlogo.svg\n!\n!\n");
    EXPECT_EQ(splash_.told, (Texts{"text ", "font ", "size 1", "style", "logo /program/logo.svg", kTitle}));
    EXPECT_EQ(branding_, Texts{"Emberline"});
}

TEST_F(SplashBrandingTest, KeepsTheLinesOfAFileThatEndsEarly) {
    prompts.ExpectError(kEndsEarly, Answer::Ignore);
    Load("A\nArial\n10\nitalic\nNULL\n!\nBrand\nStreet\n");
    EXPECT_EQ(splash_.told, (Texts{"text A", "font Arial", "size 10", "style italic", kTitle}));
    EXPECT_EQ(branding_, (Texts{"Brand", "Street"}));

    // Retry reads the file anew.
    splash_.told.clear();
    prompts.ExpectError(kEndsEarly, Answer::Retry);
    prompts.whileOpen = [&] { files["/program/Corvane_RV52.cfg"] = "B\nArial\n9\n\nNULL\n!\nMended\n!\n"; };
    Load("A\n!\nBroken\n");
    EXPECT_EQ(splash_.told.front(), "text B");
    EXPECT_EQ(branding_, Texts{"Mended"});
}

TEST_F(SplashBrandingTest, AsksAboutEverythingThatIsMissingOrWrong) {
    const auto noLine = [](const std::string& which) {
        return "The branding file Corvane_RV52.cfg has no line " + which + " in its first section.";
    };
    prompts.ExpectError(
        "The branding file Corvane_RV52.cfg gives \"-3\" as font size, which is not a positive number.",
        Answer::Ignore);
    prompts.ExpectError(noLine("4 (font style)"), Answer::Ignore);
    prompts.ExpectError(noLine("5 (logo file)"), Answer::Ignore);
    Load("A\nArial\n-3\n!\nB\n!\n");
    EXPECT_EQ(splash_.told, (Texts{"text A", "font Arial", kTitle}));

    // What was set before the failing step stays; the steps after it are left out.
    splash_.told.clear();
    splash_.missingLogo = "/program/gone.gif";
    prompts.ExpectError("no picture", Answer::Abort);
    Load("A\nArial\n8\nbold\ngone.gif\n!\nB\n!\n");
    EXPECT_EQ(splash_.told, (Texts{"text A", "font Arial", "size 8", "style bold"}));

    splash_.told.clear();
    test.files.failReads = true;
    prompts.ExpectError("cannot read /program/Corvane_RV52.cfg", Answer::Abort);
    Load("");
    EXPECT_EQ(splash_.told, Texts{});
    EXPECT_EQ(branding_, Texts{"B"});
}

}  // namespace
}  // namespace rv52
