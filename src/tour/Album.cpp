#include "tour/Album.h"

#include "platform/qt/QtText.h"

#include <QImage>
#include <QRegularExpression>

#include <cstdio>

namespace rv52 {

namespace {

// "Upload completed." makes "upload-completed".
QString FileName(const std::string& name) {
    static const QRegularExpression others(QStringLiteral("[^a-z0-9]+"));
    return ToQt(name)
        .toLower()
        .replace(others, QStringLiteral(" "))
        .trimmed()
        .replace(QLatin1Char(' '), QLatin1Char('-'));
}

}  // namespace

Album::Album(const QDir& folder) : folder_(folder) {
    folder_.mkpath(QStringLiteral("."));
    const QStringList ours{QStringLiteral("[0-9][0-9]-*.png"), QStringLiteral("*.tbl"),
                           QStringLiteral("*.pdf")};
    for (const auto& old : folder_.entryList(ours, QDir::Files))
        folder_.remove(old);
}

bool Album::Add(const QImage& picture, const std::string& name) {
    const auto file =
        QStringLiteral("%1-%2.png").arg(++pictures_, 2, 10, QLatin1Char('0')).arg(FileName(name));
    Say("  " + FromQt(file));
    return picture.save(folder_.filePath(file));
}

void Album::Say(const std::string& line) const {
    std::printf("%s\n", line.c_str());
    std::fflush(stdout);
}

std::string Album::Path(const char* name) const {
    return FromQt(folder_.filePath(QString::fromLatin1(name)));
}

}  // namespace rv52
