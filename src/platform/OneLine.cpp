#include "platform/OneLine.h"

#include <algorithm>

namespace rv52 {

std::string OneLine(std::string_view text) {
    std::string line(text);
    std::ranges::replace_if(
        line, [](unsigned char character) { return character < ' ' || character == 0x7F; }, '?');
    return line;
}

}  // namespace rv52
