#pragma once

#include <QString>

#include <string>
#include <string_view>

namespace rv52 {

// The core's texts are UTF-8.
inline QString ToQt(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}
inline std::string FromQt(const QString& text) {
    return text.toStdString();
}

}  // namespace rv52
