#include "table/SliderScale.h"

#include "table/Numbers.h"

#include <algorithm>

namespace rv52 {

int SliderScale::PositionOf(double value) const {
    const double position = RoundHalfEven(sum - value / unit);
    return static_cast<int>(std::clamp<double>(position, first, last));
}

}  // namespace rv52
