#include "platform/Text.h"

#include <algorithm>

namespace rv52 {

namespace {

char Upper(char letter) {
    return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
}

}  // namespace

std::string UpperCase(std::string_view text) {
    std::string upper(text);
    std::ranges::transform(upper, upper.begin(), Upper);
    return upper;
}

bool ContainsNoCase(std::string_view text, std::string_view word) {
    const auto same = [](char left, char right) { return Upper(left) == Upper(right); };
    return std::search(text.begin(), text.end(), word.begin(), word.end(), same) != text.end() ||
           word.empty();
}

std::string_view LastCharacters(std::string_view text, std::size_t count) {
    auto start = text.size();
    while (start > 0 && count > 0) {
        --start;
        // The bytes of one character that follow its first are 10xxxxxx.
        if ((static_cast<unsigned char>(text[start]) & 0xC0U) != 0x80U) --count;
    }
    return text.substr(start);
}

std::string_view TakeLine(std::string_view& text) {
    const auto end = text.find('\n');
    auto line = text.substr(0, end);
    if (line.ends_with('\r')) line.remove_suffix(1);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    return line;
}

std::vector<std::string_view> Lines(std::string_view text) {
    std::vector<std::string_view> lines;
    while (!text.empty())
        lines.push_back(TakeLine(text));
    return lines;
}

std::string Counted(std::size_t count, const std::string& what) {
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

std::string OneLine(std::string_view text) {
    std::string line(text);
    std::ranges::replace_if(
        line, [](unsigned char character) { return character < ' ' || character == 0x7F; }, '?');
    return line;
}

}  // namespace rv52
