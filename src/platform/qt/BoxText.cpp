#include "platform/qt/BoxText.h"

#include "platform/qt/QtText.h"

namespace rv52 {

namespace {

constexpr qsizetype kLongestShown = 2000;
constexpr int kLongestWord = 80;

}  // namespace

QString ForShowing(const std::string& text) {
    auto shown = ToQt(text);
    shown.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    shown.replace(QChar(), QChar(0xFFFD));
    return shown.size() > kLongestShown ? shown.left(kLongestShown) + QChar(0x2026) : shown;
}

QString Breakable(const QString& text) {
    QString broken;
    int run = 0;
    for (const auto character : text) {
        run = character.isSpace() ? 0 : run + 1;
        if (run > kLongestWord) {
            broken += QChar(0x200B);  // may break here, takes no room
            run = 1;
        }
        broken += character;
    }
    return broken;
}

}  // namespace rv52
