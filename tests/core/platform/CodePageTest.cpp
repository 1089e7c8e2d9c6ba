#include "platform/CodePage.h"

#include <gtest/gtest.h>

namespace rv52 {
namespace {

TEST(CodePageTest, BringsAllCodesBack) {
    std::string all;
    for (int code = 0; code < 256; ++code)
        all += static_cast<char>(code);
    const auto text = FromCodePage(all);
    EXPECT_EQ(CharacterCount(text), 256U);
    EXPECT_EQ(ToCodePage(text), all);
    EXPECT_EQ(FromCodePage("\x80 \xC4rger \x93\x9F\x94 \x81"), "€ Ärger “Ÿ” \u0081");
}

TEST(CodePageTest, HasNoCodeForOtherCharacters) {
    // Beyond the code page, a control character that it gives another meaning, and what is not UTF-8:
    // a stray and a missing continuation, an overlong form, four bytes.
    for (const auto* text :
         {"Ω", "中", "a\xC2\x80", "\x80", "\xC3", "\xC3(", "\xC0\x80", "\xE0\x80\x80", "😀"})
        EXPECT_EQ(ToCodePage(text), std::nullopt) << text;
}

}  // namespace
}  // namespace rv52
