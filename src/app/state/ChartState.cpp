#include "app/state/ChartState.h"

namespace rv52 {

void ChartState::SetTemplate(ChartTemplate chartTemplate) {
    template_ = std::move(chartTemplate);
    ++templateSerial_;
    store_.Touch();
}

void ChartState::SetLabel(ValueLabel label) {
    if (label == label_) return;
    label_ = std::move(label);
    store_.Touch();
}

}  // namespace rv52
