#pragma once

#include "platform/linux/EndSignals.h"

#include <QObject>

class QSessionManager;

namespace rv52 {

class MainWindow;
struct Session;

// The system's own ways to end the program, by a signal or by logging out, as closing the main window.
class SystemEnd : public QObject {
    Q_OBJECT

 public:
    SystemEnd(Session& session, MainWindow& window);

    // The desktop wants to log out. False when it has to wait: the user wants to stay, or a command has to
    // end first, which the exit sequence then follows.
    bool MayLogOut();

 private:
    void Signalled(int signal);
    void AnswerDesktop(QSessionManager& desktop);
    void CloseWhatStands();

    Session& session_;
    MainWindow& window_;
    EndSignals signals_;
};

}  // namespace rv52
