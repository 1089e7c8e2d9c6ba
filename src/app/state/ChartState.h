#pragma once

#include "app/state/TableStore.h"
#include "chart/ChartTemplate.h"
#include "table/AdvanceTable.h"

#include <optional>
#include <string>

namespace rv52 {

// The one movable label of the chart.
struct ValueLabel {
    bool shown = false;
    Cell at{Column(1), Row(1)};
    std::string text;

    bool operator==(const ValueLabel&) const = default;
};

// What the chart shows besides the table's values. Every change is a redraw of the store's, so that
// suspending the store suspends these too.
class ChartState {
 public:
    explicit ChartState(TableStore& store) : store_(store) {}

    const std::optional<ChartTemplate>& Template() const { return template_; }
    // Counts the templates loaded: a view that turned the chart starts anew when it changes.
    int TemplateSerial() const { return templateSerial_; }
    void SetTemplate(ChartTemplate chartTemplate);

    const ValueLabel& Label() const { return label_; }
    void ShowLabel(Cell at, std::string text) { SetLabel({true, at, std::move(text)}); }
    void SetLabelText(std::string text) { SetLabel({label_.shown, label_.at, std::move(text)}); }
    void HideLabel() { SetLabel({false, label_.at, label_.text}); }

    // The chart's own mouse and keyboard interactions: on for RACE, off for EX.
    bool Interactive() const { return interactive_; }
    void SetInteractive(bool interactive) { interactive_ = interactive; }

 private:
    void SetLabel(ValueLabel label);

    TableStore& store_;
    std::optional<ChartTemplate> template_;
    int templateSerial_ = 0;
    ValueLabel label_;
    bool interactive_ = false;
};

// What the left mouse button is doing on the chart.
struct ChartGesture {
    // Decided at the press, it holds until the release, whichever key is let go first.
    enum class Kind { None, Point, Surface };

    Kind kind = Kind::None;
    int PickedColumn = 0;  // the data point chosen by the last press; 0 when it hit none
    int PickedRow = 0;
    double PendingOffset = 0;        // degrees, of a whole-surface shift being dragged
    bool ReleaseSuppressed = false;  // a double click is going on; the next release only ends it

    bool Picked() const { return PickedColumn > 0 && PickedRow > 0; }
    Cell PickedCell() const { return {Column(PickedColumn), Row(PickedRow)}; }
};

}  // namespace rv52
