#include "app/ui/SystemEnd.h"

#include "app/Leaving.h"
#include "app/state/Session.h"
#include "app/ui/MainWindow.h"

#include <QApplication>
#include <QSessionManager>
#include <QTimer>

namespace rv52 {

SystemEnd::SystemEnd(Session& session, MainWindow& window)
    : session_(session), window_(window), signals_([this](int signal) { Signalled(signal); }) {
    // At once, since the desktop takes the end of this call for the answer.
    connect(qGuiApp, &QGuiApplication::commitDataRequest, this, &SystemEnd::AnswerDesktop,
            Qt::DirectConnection);
}

void SystemEnd::Signalled(int signal) {
    switch (AskedToEnd(session_)) {
        case EndAct::Nothing:
            return;
        case EndAct::LeaveAtOnce:
            return EndSignals::LeaveBy(signal);
        case EndAct::CloseBoxes:
            break;
    }
    const bool commandRuns = session_.gate.Busy();
    CloseWhatStands();
    // What has been closed returns to whom it belongs before the question comes. A running command is
    // followed by the exit sequence anyway.
    if (!commandRuns) QTimer::singleShot(0, &window_, &QWidget::close);
}

bool SystemEnd::MayLogOut() {
    const bool commandRuns = session_.gate.Busy();
    if (AskedToEnd(session_) == EndAct::CloseBoxes) CloseWhatStands();
    if (!commandRuns) window_.close();
    return !commandRuns && !window_.isVisible();
}

// The desktop listens to a refusal only from whom it has let ask.
void SystemEnd::AnswerDesktop(QSessionManager& desktop) {
    const bool mayAsk = desktop.allowsInteraction();
    const bool atOnce = !session_.state.TableShown && !session_.gate.Busy();
    if (!mayAsk && !atOnce) return;
    if (!MayLogOut()) desktop.cancel();
    if (mayAsk) desktop.release();
}

// From the top down, as their close boxes would.
void SystemEnd::CloseWhatStands() {
    while (auto* popup = QApplication::activePopupWidget())
        if (!popup->close()) break;
    while (auto* box = QApplication::activeModalWidget())
        if (!box->close()) break;
}

}  // namespace rv52
