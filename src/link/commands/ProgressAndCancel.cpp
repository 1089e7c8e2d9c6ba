#include "link/commands/ProgressAndCancel.h"

#include "app/state/Session.h"
#include "table/Numbers.h"

#include <algorithm>

namespace rv52 {

namespace {

int Percent(int position, int fullPosition) {
    return std::clamp(static_cast<int>(RoundHalfEven(100.0 * position / fullPosition)), 0, 100);
}

}  // namespace

ProgressAndCancel::ProgressAndCancel(Session& session, LinkWork work) : session_(session) {
    Tell(work);
}

ProgressAndCancel::~ProgressAndCancel() {
    if (fullPosition_ > 0) session_.shell.HideProgress();
    Tell(LinkWork::None);
}

void ProgressAndCancel::Tell(LinkWork work) {
    session_.state.LinkWork = work;
    session_.shell.RenewStatus();
}

void ProgressAndCancel::ShowPanel(const char* caption, int fullPosition) {
    fullPosition_ = fullPosition;
    session_.steps([&] { session_.shell.ShowProgress(caption); });
}

void ProgressAndCancel::AdvanceBar() {
    if (fullPosition_ == 0) return;
    session_.steps([&] { session_.shell.SetProgress(Percent(position_, fullPosition_)); });
    ++position_;
}

bool ProgressAndCancel::AfterRead() {
    AdvanceBar();
    session_.steps([&] { session_.line.Yield(); });
    return !session_.state.AbortRequested;
}

bool ProgressAndCancel::AfterWrite() {
    AdvanceBar();
    return true;
}

}  // namespace rv52
