#include "app/Branding.h"
#include "support/TestSession.h"

#include <gtest/gtest.h>
#include <tuple>

namespace rv52 {
namespace {

using Texts = std::vector<std::string>;

TEST(BrandingTest, ReadsBothSectionsOfEveryKindOfFile) {
    using Case = std::tuple<const char*, std::string, Texts, Texts, bool>;
    const std::vector<Case> cases{
        {"plain", "! a\n!b\nA\nB\n!\nC\nD\n!\n", {"A", "B"}, {"C", "D"}, true},
        {"CR LF", "!\r\nBrand\r\n!\r\nBrand \r\n!\r\n", {"Brand"}, {"Brand "}, true},
        {"no break after the last line", "A\n!\nB\n!", {"A"}, {"B"}, true},
        {"empty lines are data", "!\n\nA\n\n!\n\n!\n", {"", "A", ""}, {""}, true},
        {"\"!\" further on is data", " !A\nB!\n!\n !\n!\n", {" !A", "B!"}, {" !"}, true},
        {"an empty second section", "!\nA\n!\n! nothing\nnot read\n", {"A"}, {}, true},
        {"ends in the second section", "A\n!\nB\nC\n", {"A"}, {"B", "C"}, false},
        {"ends after the first section", "A\n!\n", {"A"}, {}, false},
        {"empty", "", {}, {}, false},
        {"single-byte text", "F\xFCr \x80\n!\nCaf\xE9\n!\n", {"Für €"}, {"Café"}, true},
    };
    for (const auto& [what, content, splash, branding, complete] : cases) {
        const auto read = ParseBranding(content);
        EXPECT_EQ(read.splashLines, splash) << what;
        EXPECT_EQ(read.brandingLines, branding) << what;
        EXPECT_EQ(read.complete, complete) << what;
    }
}

TEST(BrandingTest, ShipsTheFileThatSaysWhatTheProgramSaysWithoutIt) {
    const auto shipped = ParseBranding(test::ShippedFile(kBrandingFileName));
    EXPECT_TRUE(shipped.complete);
    EXPECT_EQ(shipped.splashLines, DefaultSplashLines());
    EXPECT_EQ(shipped.brandingLines, DefaultBrandingLines());
    EXPECT_EQ(test::ShippedFile(shipped.splashLines[4]).substr(0, 4), "GIF8");
}

}  // namespace
}  // namespace rv52
