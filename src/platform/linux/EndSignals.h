#pragma once

#include <QSocketNotifier>

#include <csignal>
#include <functional>
#include <memory>
#include <vector>

namespace rv52 {

// The signals by which the system asks a program to end (a kill, a terminal that is closed, its Ctrl+C), as
// events of the event loop. One that is ignored already, as under nohup, stays so. Only one at a time.
class EndSignals {
 public:
    using Handler = std::function<void(int signal)>;

    explicit EndSignals(Handler handler);
    ~EndSignals();
    EndSignals(const EndSignals&) = delete;
    EndSignals& operator=(const EndSignals&) = delete;

    // Ends the program as the signal would have without anybody waiting for it.
    static void LeaveBy(int signal);

 private:
    struct Before {
        int signal;
        struct sigaction action;
    };

    void Receive();

    Handler handler_;
    std::vector<Before> before_;
    std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace rv52
