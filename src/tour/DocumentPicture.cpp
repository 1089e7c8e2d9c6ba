#include "tour/DocumentPicture.h"

#include <QHash>
#include <QImage>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

namespace rv52 {

namespace {

// No wider than a page of the help has room for when its window opens.
constexpr double kHelp = 0.45;
constexpr double kReadme = 0.6;

constexpr int kBlock = 8;        // pixels
constexpr int kSameShade = 12;   // of 255
constexpr int kStrayBlocks = 4;  // smoothed otherwise

// The middle shade of each block of pixels.
QImage Blurred(const QImage& picture) {
    return picture.convertToFormat(QImage::Format_RGB32)
        .scaled(std::max(1, picture.width() / kBlock), std::max(1, picture.height() / kBlock),
                Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

bool SameShade(QRgb one, QRgb other) {
    return std::abs(qRed(one) - qRed(other)) <= kSameShade &&
           std::abs(qGreen(one) - qGreen(other)) <= kSameShade &&
           std::abs(qBlue(one) - qBlue(other)) <= kSameShade;
}

// One of 32 shades of red, green and blue, black and white among them.
QRgb Coarse(QRgb colour) {
    return 0xFF000000 | (colour & 0xF8F8F8) | ((colour >> 5) & 0x070707);
}

// In the 256 colours that it has most of, near ones counted together: a small file, and as good to the eye.
QImage OfFewColours(const QImage& picture) {
    constexpr qsizetype kColours = 256;
    QHash<QRgb, int> pixels;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            ++pixels[Coarse(picture.pixel(x, y))];
    auto colours = pixels.keys();
    std::ranges::sort(colours, [&](QRgb one, QRgb other) {
        return std::pair(pixels[one], one) > std::pair(pixels[other], other);
    });
    colours.resize(std::min(colours.size(), kColours));
    return picture.convertToFormat(QImage::Format_Indexed8, colours, Qt::ThresholdDither);
}

}  // namespace

const std::vector<DocumentPicture>& DocumentPictures() {
    static const std::vector<DocumentPicture> pictures{
        {"chart-drag", "docs/window.png", kReadme},
        {"firmware-id", "data/help/identified.png", kHelp, 0.542, 0.16},
        {"cell-selected", "data/help/window.png", kHelp},
        {"modify", "data/help/modify.png", kHelp},
        {"parameters", "data/help/parameters.png", kHelp, 0.785, 0.978},
        {"programming", "data/help/upload.png", kHelp},
    };
    return pictures;
}

QImage Make(const DocumentPicture& picture, const QDir& tour) {
    const auto pattern = QStringLiteral("[0-9][0-9]-%1.png").arg(QLatin1String(picture.taken));
    const auto found = tour.entryList({pattern}, QDir::Files, QDir::Name);
    if (found.isEmpty()) return {};
    const QImage whole(tour.filePath(found.front()));
    QRect part(0, 0, static_cast<int>(std::lround(whole.width() * picture.width)),
               static_cast<int>(std::lround(whole.height() * picture.height)));
    part.moveCenter(whole.rect().center());
    return OfFewColours(
        whole.copy(part)
            .convertToFormat(QImage::Format_RGB32)
            .scaled(part.size() * picture.scale, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
}

bool LookAlike(const QImage& one, const QImage& other) {
    if (one.size() != other.size()) return false;
    const auto first = Blurred(one);
    const auto second = Blurred(other);
    int different = 0;
    for (int y = 0; y < first.height(); ++y)
        for (int x = 0; x < first.width(); ++x)
            different += SameShade(first.pixel(x, y), second.pixel(x, y)) ? 0 : 1;
    return different <= kStrayBlocks;
}

}  // namespace rv52
