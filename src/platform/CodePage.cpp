#include "platform/CodePage.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace rv52 {

namespace {

// Codes 0x80 to 0x9F; every other code is its own character number.
constexpr std::array<char32_t, 32> kUpperControls{
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};
constexpr std::uint8_t kFirstUpperControl = 0x80;

char32_t CharacterOf(std::uint8_t code) {
    const std::size_t place = code - std::size_t{kFirstUpperControl};
    return code >= kFirstUpperControl && place < kUpperControls.size() ? kUpperControls[place] : code;
}

std::optional<char> CodeOf(char32_t character) {
    const auto* place = std::ranges::find(kUpperControls, character);
    if (place != kUpperControls.end())
        return static_cast<char>(kFirstUpperControl + (place - kUpperControls.begin()));
    // A control character that the code page gives another meaning has no code of its own.
    const bool taken =
        character >= kFirstUpperControl && character < kFirstUpperControl + kUpperControls.size();
    if (character > 0xFF || taken) return std::nullopt;
    return static_cast<char>(character);
}

bool IsContinuation(char byte) {
    return (static_cast<std::uint8_t>(byte) & 0xC0) == 0x80;
}

// The character that the text begins with, which is taken off it. Windows-1252 needs no more than three
// bytes; a longer or malformed sequence is nothing.
std::optional<char32_t> TakeCharacter(std::string_view& text) {
    const auto lead = static_cast<std::uint8_t>(text.front());
    const std::size_t length = lead < 0x80                   ? 1
                               : lead >= 0xC2 && lead < 0xE0 ? 2
                               : (lead & 0xF0) == 0xE0       ? 3
                                                             : 0;
    if (length == 0 || text.size() < length) return std::nullopt;
    char32_t character = length == 1 ? lead : lead & (0xFFU >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        if (!IsContinuation(text[i])) return std::nullopt;
        character = (character << 6) | (static_cast<std::uint8_t>(text[i]) & 0x3FU);
    }
    if (length == 3 && character < 0x800) return std::nullopt;
    text.remove_prefix(length);
    return character;
}

}  // namespace

std::string FromCodePage(std::string_view bytes) {
    std::string text;
    for (const auto byte : bytes) {
        const auto character = CharacterOf(static_cast<std::uint8_t>(byte));
        if (character < 0x80) {
            text += byte;
        } else if (character < 0x800) {
            text += static_cast<char>(0xC0 | (character >> 6));
            text += static_cast<char>(0x80 | (character & 0x3F));
        } else {
            text += static_cast<char>(0xE0 | (character >> 12));
            text += static_cast<char>(0x80 | ((character >> 6) & 0x3F));
            text += static_cast<char>(0x80 | (character & 0x3F));
        }
    }
    return text;
}

std::optional<std::string> ToCodePage(std::string_view utf8) {
    std::string bytes;
    while (!utf8.empty()) {
        const auto character = TakeCharacter(utf8);
        const auto code = character ? CodeOf(*character) : std::nullopt;
        if (!code) return std::nullopt;
        bytes += *code;
    }
    return bytes;
}

std::size_t CharacterCount(std::string_view utf8) {
    return utf8.size() - static_cast<std::size_t>(std::ranges::count_if(utf8, IsContinuation));
}

}  // namespace rv52
