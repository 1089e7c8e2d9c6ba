#include "app/Leaving.h"
#include "app/RunCommand.h"
#include "app/WindowKeys.h"
#include "app/state/FormResize.h"
#include "fuzz/Bytes.h"
#include "fuzz/Target.h"
#include "link/commands/LineConditions.h"
#include "link/commands/Vin.h"
#include "module/commands/Download.h"
#include "module/commands/Upload.h"
#include "simulator/SimulatedModule.h"
#include "simulator/VirtualLine.h"
#include "support/DismissingUser.h"
#include "support/IdleLine.h"
#include "support/Recorders.h"
#include "support/RecordingPrinter.h"
#include "support/TestSession.h"
#include "table/commands/TableDisplay.h"

#include <algorithm>

namespace rv52::fuzz {

namespace {

using namespace std::chrono_literals;

// A module whose input says how long it behaves, and what it answers when it does not.
class FuzzedModule : public Peer {
 public:
    FuzzedModule(Bytes& input, const ModuleOptions& options) : input_(input), module_(options) {}

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

 private:
    Bytes& input_;
    SimulatedModule module_;
    int goodFor_ = 0;
};

// Answers as the input says, after plugging in again or not; never retries for ever.
class FuzzedUser : public test::DismissingUser {
 public:
    FuzzedUser(Bytes& input, VirtualLine& line) : input_(input), line_(line) {}

    Answer Ask(const MessageBox& box) override {
        const int how = input_.Next();
        if ((how & 4) != 0) line_.PlugIn();
        if (box.buttons == Buttons::OkCancel) return Answer::Ok;
        if (box.buttons == Buttons::RetryCancel) return (how & 1) != 0 ? Answer::Retry : Answer::Cancel;
        if (box.buttons != Buttons::AbortRetryIgnore) return DismissAnswer(box.buttons);
        if ((how & 3) == 1 && retries_-- > 0) return Answer::Retry;
        return (how & 2) != 0 ? Answer::Ignore : Answer::Abort;
    }
    std::string AskText(const InputBox&) override { return "1CVRV52A0SM000081"; }

 private:
    Bytes& input_;
    VirtualLine& line_;
    int retries_ = 4;
};

// While a command yields: the line's conditions, Escape, the window closed or resized, the plug in or out.
class Disturbance {
 public:
    Disturbance(Bytes& input, VirtualLine& line, Session& session)
        : input_(input), line_(line), session_(session), calmFor_(input.Next()) {
        line_.OnYield([this] {
            if (calmFor_-- == 0) Strike();
        });
    }
    bool Closed() const { return closed_; }

 private:
    void Strike() {
        const int how = input_.Next();
        calmFor_ = how == 0 ? -1 : 4 * input_.Next();
        if (how == 0) return;
        switch (how % 6) {
            case 0:
                return EscapePressed(session_);
            case 1:
                closed_ = true;
                return RequestExit(session_);
            case 2:
                return WindowResized(session_);
            case 3:
                return line_.HangUp();
            case 4:
                return line_.PlugIn();
            default:
                return line_.Raise(static_cast<LineCondition>(how / 6 % 6));
        }
    }

    Bytes& input_;
    VirtualLine& line_;
    Session& session_;
    int calmFor_;
    bool closed_ = false;
};

}  // namespace

void Target(std::string_view input) {
    static test::IdleLine idle;
    static const test::TestSession shipped(idle);
    static test::MemoryFiles files = shipped.files;
    static test::MemorySettings settings;
    static test::RecordingPrinter printer;

    Bytes bytes(input);
    const int set = bytes.Next();
    const auto type = (set & 4) != 0 ? TableType::EX : TableType::RACE;
    ModuleOptions options((set & 8) != 0 ? TableType::EX : TableType::RACE);
    options.echo = (set & 16) != 0;
    FuzzedModule module(bytes, options);
    VirtualLine line(module);
    FuzzedUser user(bytes, line);
    test::RecordingView view;
    test::RecordingShell shell;
    Session session(Ports{line, user, view, shell, files, settings, printer});
    HandleLineConditions(session);
    session.table.Replace(AdvanceTable(type));
    session.state.TableType = type;
    if (set % 4 != 0) ShowTable(session);

    constexpr void (*commands[])(Session&) = {mnuDownload_Click, mnuUpload_Click, mnuEditVIN_Click,
                                              mnuUpload_Click};
    const Disturbance disturbance(bytes, line, session);
    RunCommand(session, commands[set % 4]);
    Require(!line.IsOpen() && !shell.progressShown, "the link is at rest");
    Require(!shell.closed || disturbance.Closed(), "the window closes only when it was asked to");
    Require(view.shown == session.state.TableShown, "the screen shows what the state says");
    Require(set % 4 == 0 || session.state.TableType == type, "the type is the table's");
    for (const auto& panel : shell.progress)
        Require(std::ranges::is_sorted(panel.percents), "progress does not run backwards");
}

}  // namespace rv52::fuzz
