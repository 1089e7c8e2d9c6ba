#include "chart/Legend.h"

#include "table/Numbers.h"

#include <algorithm>

namespace rv52 {

namespace {

std::string Degrees(double value) {
    return ShortestDecimal(value) + "\u00B0";
}

// Of these shares of a text's height the legend is made.
constexpr double kBarWidth = 1.0;
constexpr double kGap = 0.5;
constexpr double kBandHeight = 2.0;
// And of the chart's height it takes at least, and at most, these shares.
constexpr double kLeastShare = 0.4;
constexpr double kMostShare = 0.72;

class Builder {
 public:
    Builder(const Area& chart, const ChartAxis& advance, const TextMeasure& measure)
        : advance_(advance),
          measure_(measure),
          bands_(static_cast<int>(RoundHalfEven((advance.to - advance.from) / advance.step))),
          em_(measure("0").height) {
        const double texts = measure(">" + Degrees(advance.to)).width;
        const double width = em_ * (kBarWidth + 3 * kGap) + texts;
        legend_.column = {chart.Right() - width, chart.top, width, chart.height};
        bandHeight_ = std::min(std::max(kBandHeight * em_, kLeastShare * chart.height / bands_),
                               kMostShare * chart.height / bands_);
        left_ = legend_.column.left + kGap * em_;
        bottom_ = CentreOf(chart).y + bandHeight_ * bands_ / 2;
    }

    Legend Build(OutsideValues outside) {
        for (int band = 0; band < bands_; ++band)
            legend_.swatches.push_back({band, Bar(bottom_ - (band + 1) * bandHeight_, bandHeight_)});
        EdgeTexts();
        const double top = bottom_ - bands_ * bandHeight_;
        if (outside.above) Outside(bands_, top - 1.75 * em_, ">" + Degrees(advance_.to));
        if (outside.below) Outside(-1, bottom_ + 0.75 * em_, "<" + Degrees(advance_.from));
        return std::move(legend_);
    }

 private:
    Area Bar(double top, double height) const { return {left_, top, kBarWidth * em_, height}; }

    void EdgeTexts() {
        const int stride = bandHeight_ >= em_ ? 1 : static_cast<int>(em_ / std::max(1.0, bandHeight_)) + 1;
        for (int edge = 0; edge <= bands_; edge += stride)
            Text(Degrees(advance_.from + edge * advance_.step), bottom_ - edge * bandHeight_);
    }

    void Outside(int band, double top, const std::string& text) {
        legend_.swatches.push_back({band, Bar(top, em_)});
        Text(text, top + em_ / 2);
    }

    void Text(const std::string& text, double middle) {
        const Extent size = measure_(text);
        legend_.texts.push_back(
            {text, {left_ + (kBarWidth + kGap) * em_, middle - size.height / 2, size.width, size.height}});
    }

    const ChartAxis& advance_;
    const TextMeasure& measure_;
    int bands_;
    double em_;
    double bandHeight_ = 0;
    double left_ = 0;
    double bottom_ = 0;
    Legend legend_;
};

}  // namespace

Legend LegendIn(const Area& chart, const ChartAxis& advance, OutsideValues outside,
                const TextMeasure& measure) {
    return Builder(chart, advance, measure).Build(outside);
}

}  // namespace rv52
