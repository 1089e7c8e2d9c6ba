#include "platform/qt/Papers.h"

#include <QLocale>
#include <QSizeF>

#include <algorithm>
#include <cmath>

namespace rv52 {

namespace {

constexpr double kMargin = 18;  // points, a quarter inch

QPageSize SizeOf(const PrintPaper& paper) {
    return QPageSize(QSizeF(paper.width, paper.height), QPageSize::Point, {}, QPageSize::FuzzyMatch);
}

}  // namespace

PrintPaper PaperOf(QPageSize::PageSizeId id) {
    const auto size = QPageSize::size(id, QPageSize::Point);
    return {.width = size.width(), .height = size.height()};
}

std::vector<PrintPaper> StandardPapers() {
    std::vector<PrintPaper> papers;
    for (const auto id : {QPageSize::A4, QPageSize::Letter, QPageSize::Legal, QPageSize::A3,
                          QPageSize::Tabloid, QPageSize::A5, QPageSize::B4, QPageSize::B5})
        papers.push_back(PaperOf(id));
    if (QLocale::system().measurementSystem() == QLocale::ImperialUSSystem)
        std::ranges::swap(papers[0], papers[1]);
    return papers;
}

QString PaperName(const PrintPaper& paper) {
    const auto size = SizeOf(paper);
    if (size.id() != QPageSize::Custom) return size.name();
    const auto millimetres = [](double points) { return QString::number(std::lround(points * 25.4 / 72)); };
    return QStringLiteral("%1 x %2 mm").arg(millimetres(paper.width), millimetres(paper.height));
}

QPageLayout PageAcross(const PrintPaper& paper) {
    const double sides = std::max({kMargin, paper.top, paper.bottom});
    const double ends = std::max({kMargin, paper.left, paper.right});
    return {SizeOf(paper), QPageLayout::Landscape, QMarginsF(sides, ends, sides, ends)};
}

}  // namespace rv52
