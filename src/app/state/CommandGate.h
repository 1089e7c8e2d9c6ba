#pragma once

#include <chrono>
#include <optional>

namespace rv52 {

// Admits one command at a time, and remembers what has to wait until it has ended.
class CommandGate {
 public:
    bool Busy() const { return busy_; }

    // While a command runs: a close of the main window is asked for.
    bool ClosePending() const { return closePending_; }
    // While a command runs: a resize has asked for the serial settings to be applied again.
    bool SettingsPending() const { return settingsPending_; }

    void DeferClose() { closePending_ = true; }
    void DeferSettings() { settingsPending_ = true; }

    // Whether closing the window ends the running command as Escape does: true while a module is read,
    // false while one is programmed and verified.
    bool CloseAborts() const { return closeAborts_; }
    void SetCloseAborts(bool aborts) { closeAborts_ = aborts; }

    // While a command runs that the system has asked to make way: whatever box it would show is as good as
    // closed.
    bool DismissesBoxes() const { return dismissesBoxes_; }
    void SetDismissesBoxes(bool dismisses) { dismissesBoxes_ = dismisses; }

    // While the exit sequence runs.
    bool Leaving() const { return leaving_; }
    void SetLeaving(bool leaving) { leaving_ = leaving; }

    // When the system first asked for the end that the program has not come to yet.
    std::optional<std::chrono::nanoseconds> EndAskedAt() const { return endAskedAt_; }
    void SetEndAskedAt(std::optional<std::chrono::nanoseconds> when) { endAskedAt_ = when; }

    // Keeps the gate closed while a command runs.
    class Closed {
     public:
        explicit Closed(CommandGate& gate) : gate_(gate) {
            gate_.busy_ = true;
            gate_.closeAborts_ = false;
        }
        ~Closed() {
            gate_.busy_ = gate_.closePending_ = gate_.settingsPending_ = gate_.closeAborts_ = false;
            gate_.dismissesBoxes_ = gate_.leaving_ = false;
        }
        Closed(const Closed&) = delete;
        Closed& operator=(const Closed&) = delete;

     private:
        CommandGate& gate_;
    };

 private:
    bool busy_ = false;
    bool closePending_ = false;
    bool settingsPending_ = false;
    bool closeAborts_ = false;
    bool dismissesBoxes_ = false;
    bool leaving_ = false;
    std::optional<std::chrono::nanoseconds> endAskedAt_;
};

}  // namespace rv52
