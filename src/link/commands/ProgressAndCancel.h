#pragma once

#include "app/state/AppState.h"

namespace rv52 {

struct Session;

// What is seen of a transfer while it runs, and what may end it: the progress panel, the status line, and
// between two bytes the window's events, Escape and a close of the window among them.
class ProgressAndCancel {
 public:
    // Without a panel until ShowPanel.
    ProgressAndCancel(Session& session, LinkWork work);
    ~ProgressAndCancel();
    ProgressAndCancel(const ProgressAndCancel&) = delete;
    ProgressAndCancel& operator=(const ProgressAndCancel&) = delete;

    // The byte at fullPosition, counted from 0, is the transfer's 100 %.
    void ShowPanel(const char* caption, int fullPosition);

    // After each byte read: the bar, then the window's events. False when the user wants no more.
    bool AfterRead();
    // After each byte programmed, which nothing stops: the bar.
    bool AfterWrite();

 private:
    void Tell(LinkWork work);
    void AdvanceBar();

    Session& session_;
    int fullPosition_ = 0;  // 0: there is no panel
    int position_ = 0;
};

}  // namespace rv52
