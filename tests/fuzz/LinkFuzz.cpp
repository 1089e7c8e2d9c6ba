#include "app/Commands.h"
#include "fuzz/Target.h"
#include "link/commands/LineErrors.h"
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

// An input byte by byte; zeros after its end.
class Bytes {
 public:
    explicit Bytes(std::string_view input) : left_(input) {}

    int Next() {
        const std::string_view next = left_.substr(0, 1);
        left_.remove_prefix(next.size());
        return next.empty() ? 0 : static_cast<unsigned char>(next.front());
    }

 private:
    std::string_view left_;
};

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

// Aborts or ignores, as the input says; never retries for ever.
class FuzzedUser : public test::DismissingUser {
 public:
    explicit FuzzedUser(bool ignores) : ignores_(ignores) {}

    Answer Ask(const MessageBox& box) override {
        if (box.buttons == Buttons::AbortRetryIgnore && ignores_) return Answer::Ignore;
        return box.buttons == Buttons::OkCancel ? Answer::Ok : DismissAnswer(box.buttons);
    }
    std::string AskText(const InputBox&) override { return "1CVRV52A0SM000081"; }

 private:
    bool ignores_;
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
    FuzzedUser user((set & 32) != 0);
    test::RecordingView view;
    test::RecordingShell shell;
    Session session(Ports{line, user, view, shell, files, settings, printer});
    HandleLineErrors(session);
    session.table.Replace(AdvanceTable(type));
    session.state.TableType = type;
    if (set % 4 != 0) ShowTable(session);

    constexpr void (*commands[])(Session&) = {mnuDownload_Click, mnuUpload_Click, mnuEditVIN_Click,
                                              mnuUpload_Click};
    RunCommand(session, commands[set % 4]);
    Require(!line.IsOpen() && !shell.progressShown, "the link is at rest");
    Require(view.shown == session.state.TableShown, "the screen shows what the state says");
    Require(set % 4 == 0 || session.state.TableType == type, "the type is the table's");
    for (const auto& panel : shell.progress)
        Require(std::ranges::is_sorted(panel.percents), "progress does not run backwards");
}

}  // namespace rv52::fuzz
