#pragma once

#include "app/state/ChartAndGridLayout.h"

#include <string>

namespace rv52 {

struct NewTable;

// The chart and the grid, which are always shown and hidden together.
class ChartAndGrid {
 public:
    virtual ~ChartAndGrid() = default;

    virtual void Show() = 0;
    virtual void Hide() = 0;
    // Ends an open cell editor as Enter would; false when its text is refused and the editor stays open.
    virtual bool CommitEditor() = 0;
    // Closes an open cell editor without a question: the cell takes its text, or keeps its own where that
    // would be refused.
    virtual void SettleEditor() = 0;
};

// The main window around them.
class Shell {
 public:
    virtual ~Shell() = default;

    virtual void SetCaption(const std::string& caption) = 0;
    // The window's inner size in twips and whether it is minimised.
    virtual WindowSize InnerSize() const = 0;
    // Places the chart, the grid and the strip under it.
    virtual void Place(const TableLayout& layout) = 0;

    // The progress panel: shown with a caption and the bar at 0, repainted before the call returns.
    virtual void ShowProgress(const std::string& caption) = 0;
    virtual void SetProgress(int percent) = 0;
    virtual void HideProgress() = 0;

    // What the status line tells of besides the table's values and the grid's cursor has changed.
    virtual void RenewStatus() = 0;

    virtual void ShowPortPanel() = 0;
    virtual void HidePortPanel() = 0;
    // The New Table dialog, modal; returns when it has been closed.
    virtual void ShowNewTable(NewTable& newTable) = 0;
    // The module parameters dialog, modal; returns when it has been closed.
    virtual void ShowModParams() = 0;
    virtual void OpenHelp(const std::string& path) = 0;

    // Closes every window, the last-opened first; the program then ends.
    virtual void CloseWindows() = 0;
};

}  // namespace rv52
