#pragma once

#include <QString>

#include <string>

namespace rv52 {

// The text of a message or input box as it is shown: cut at 2,000 characters.
QString ForShowing(const std::string& text);

// The same with places to break inside endless words, such as paths; only the eye shall meet them.
QString Breakable(const QString& text);

}  // namespace rv52
