#include "app/Leaving.h"
#include "app/RunCommand.h"
#include "app/WindowKeys.h"
#include "app/state/FormResize.h"
#include "fuzz/Bytes.h"
#include "fuzz/Target.h"
#include "link/commands/Vin.h"
#include "module/commands/Download.h"
#include "module/commands/Upload.h"
#include "support/ConnectedSession.h"
#include "support/DismissingUser.h"
#include "support/IdleLine.h"
#include "table/commands/TableDisplay.h"

#include <algorithm>

namespace rv52::fuzz {

namespace {

using namespace std::chrono_literals;

// All that a command meets with, as the input says: the module, its user, and what else befalls it.
class Fate : public Peer, public test::DismissingUser {
 public:
    Fate(Bytes& input, const ModuleOptions& options) : input_(input), module_(options) {}

    // The module behaves for a while, and then answers anything.
    PeerAnswer Receive(std::uint8_t byte) override {
        auto answer = module_.Receive(byte);
        if (goodFor_-- > 0) return answer;
        const int control = input_.Next();
        goodFor_ = control % 128;
        if (control < 128) return answer;
        const int how = input_.Next();
        if ((how & 8) == 0) answer.bytes.clear();
        for (int count = how & 7; count > 0; --count)
            answer.bytes.push_back({static_cast<std::uint8_t>(input_.Next()), {}});
        if ((how & 16) != 0 && !answer.bytes.empty()) answer.bytes.front().delay = 990ms;
        if ((how & 32) != 0 && !answer.bytes.empty()) answer.bytes.back().delay += 1010ms;
        answer.hangUp = (how & 0xC0) == 0xC0;
        return answer;
    }

    // The user answers, after plugging in again or not; never retries for ever.
    Answer Ask(const MessageBox& box) override {
        const int how = input_.Next();
        if ((how & 4) != 0) line.PlugIn();
        if (box.buttons == Buttons::OkCancel) return Answer::Ok;
        if (box.buttons == Buttons::RetryCancel) return (how & 1) != 0 ? Answer::Retry : Answer::Cancel;
        if (box.buttons != Buttons::AbortRetryIgnore) return DismissAnswer(box.buttons);
        if ((how & 3) == 1 && retries_-- > 0) return Answer::Retry;
        return (how & 2) != 0 ? Answer::Ignore : Answer::Abort;
    }
    std::string AskText(const InputBox&) override { return "1CVRV52A0SM000081"; }

    // While a command yields: the line's conditions, Escape, the window closed or resized, the plug in or
    // out.
    void Disturb(Session& session) {
        calmFor_ = input_.Next();
        line.OnYield([this, &session] {
            if (calmFor_-- == 0) Strike(session);
        });
    }

    VirtualLine line{*this};
    bool closed = false;

 private:
    void Strike(Session& session) {
        const int how = input_.Next();
        if (how == 0) return;
        calmFor_ = 4 * input_.Next();
        if (how % 6 == 0) return EscapePressed(session);
        closed |= how % 6 == 1;
        if (how % 6 == 1) return RequestExit(session);
        if (how % 6 == 2) return WindowResized(session);
        if (how % 6 == 3) return line.HangUp();
        if (how % 6 == 4) return line.PlugIn();
        line.Raise(static_cast<LineCondition>(how / 6 % 6));
    }

    Bytes& input_;
    SimulatedModule module_;
    int goodFor_ = 0;
    int retries_ = 4;
    int calmFor_ = 0;
};

}  // namespace

void Target(std::string_view input) {
    static test::IdleLine idle;
    static test::TestSession desk(idle);
    Bytes bytes(input);
    const int set = bytes.Next();
    const auto type = (set & 4) != 0 ? TableType::EX : TableType::RACE;
    Fate fate(bytes, test::Options((set & 8) != 0 ? TableType::EX : TableType::RACE, (set & 16) != 0));
    test::RecordingView view;
    test::RecordingShell shell;
    Session session(Ports{fate.line, fate, view, shell, desk.files, desk.settings, desk.printer});
    HandleLineConditions(session);
    session.table.Replace(AdvanceTable(type));
    session.state.TableType = type;
    if (set % 4 != 0) ShowTable(session);

    constexpr void (*commands[])(Session&) = {mnuDownload_Click, mnuUpload_Click, mnuEditVIN_Click,
                                              mnuUpload_Click};
    fate.Disturb(session);
    RunCommand(session, commands[set % 4]);
    Require(!fate.line.IsOpen() && !shell.progressShown, "the link is at rest");
    Require(!shell.closed || fate.closed, "the window closes only when it was asked to");
    Require(view.shown == session.state.TableShown, "the screen shows what the state says");
    Require(set % 4 == 0 || session.state.TableType == type, "the type is the table's");
    for (const auto& panel : shell.progress)
        Require(std::ranges::is_sorted(panel.percents), "progress does not run backwards");
}

}  // namespace rv52::fuzz
