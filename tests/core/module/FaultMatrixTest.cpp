#include "app/Commands.h"
#include "link/Vin.h"
#include "link/WireProtocol.h"
#include "module/Download.h"
#include "module/EepromImage.h"
#include "module/EepromMap.h"
#include "module/Upload.h"
#include "support/DismissingUser.h"
#include "support/PatternModule.h"
#include "table/TableDisplay.h"

#include <gtest/gtest.h>
#include <tuple>

namespace rv52::test {
namespace {

// A module with someone at its plug, who may change each byte on its way in and each answer on its way out;
// both are told how many bytes have come in before.
struct TamperedModule : Peer {
    TamperedModule(const ModuleOptions& moduleOptions, Faults faults)
        : options(moduleOptions), module(moduleOptions, std::move(faults)) {}

    PeerAnswer Receive(std::uint8_t byte) override {
        auto answer = module.Receive(in ? in(received, byte) : byte);
        if (out) out(received, answer);
        ++received;
        return answer;
    }
    void PassTime(Clock now) override { module.PassTime(now); }
    void PortClosed() override {
        module.PortClosed();
        if (closed) closed();
    }
    // The ignition is off and on: its memory stays, and it stands at another address.
    void CycleIgnition() {
        auto restarted = options;
        restarted.eeprom = module.Eeprom();
        module = SimulatedModule(restarted);
        for (const int byte : {WireBytes::kSetAddress + 0, 0xC0, 0x00})
            module.Receive(static_cast<std::uint8_t>(byte));
    }

    ModuleOptions options;
    SimulatedModule module;
    std::function<void()> closed;
    std::function<std::uint8_t(int, std::uint8_t)> in;
    std::function<void(int, PeerAnswer&)> out;
    int received = 0;
};

// Gives every failure box the same answer, wants the VIN that it is offered with a 9 in front, and confirms
// it.
struct MatrixUser : OneAnswer {
    using OneAnswer::OneAnswer;

    Answer Ask(const MessageBox& box) override {
        const auto answer = OneAnswer::Ask(box);
        return box.buttons == Buttons::OkCancel ? Answer::Ok : answer;
    }
    std::string AskText(const InputBox&) override { return kVin; }

    static constexpr const char* kVin = "9XYRV52A7SM123456";
};

// The program connected to it, with the pattern's table on screen.
constexpr const char* kVinDone = "Upload completed.\r\n";

struct Workshop {
    explicit Workshop(const ModuleOptions& options, const std::string& fault = {},
                      Answer answer = Answer::Abort)
        : peer(options, fault.empty() ? Faults() : Faults({fault}, 7)), before(options.eeprom), user(answer) {
        HandleLineErrors(session);
        session.table.Replace(
            DecodeEepromImage(PatternBuffer(), options.type, session.state.ModuleParameters));
        session.state.TableType = options.type;
        SetUpTableGrid(session, options.type);
        ShowTable(session);
    }

    // What the user read last. Nothing that is so for every outcome may be otherwise: each byte has gone to
    // its own place or nowhere.
    std::string Upload() {
        const auto type = session.state.TableType;
        RunCommand(session, mnuUpload_Click);
        const auto outcome = user.told.empty() ? "" : user.told.back();
        const auto& after = peer.module.Eeprom();
        const auto wanted = Programmed(before, type);
        int strayed = 0;
        for (int address = 0; address < ModuleEeprom::kSize; ++address)
            strayed += after[address] != wanted[address] &&
                       (after[address] != before[address] || outcome == kCompleted);
        EXPECT_TRUE(strayed == 0 || (repointed && outcome != kCompleted)) << strayed << " strayed";
        EXPECT_EQ(session.state.TableType, type);
        EXPECT_TRUE(session.state.TableShown);
        ExpectRest();
        return outcome;
    }

    // The same of a VIN, whose bytes are each the old or the new one.
    std::string EditVin() {
        RunCommand(session, mnuEditVIN_Click);
        auto wanted = before;
        std::copy_n(MatrixUser::kVin, ModuleEeprom::kVinLength, wanted.bytes.begin() + ModuleEeprom::kVin);
        const auto outcome = user.told.empty() ? "" : user.told.back();
        const auto& after = peer.module.Eeprom();
        for (int address = 0; address < ModuleEeprom::kSize; ++address)
            EXPECT_TRUE(after[address] == wanted[address] ||
                        (after[address] == before[address] && outcome != kVinDone))
                << address;
        ExpectRest();
        return outcome;
    }

    // True when the table was downloaded, which is then the module's; else the screen is empty.
    bool Download() {
        HideTable(session);
        RunCommand(session, mnuDownload_Click);
        const bool done = at.test.shell.caption.ends_with(" - Downloaded Data");
        EXPECT_EQ(session.state.TableShown, done);
        EepromBuffer read{};
        if (done)
            for (const auto& range : ReadExtent(session.state.TableType).ranges)
                for (int index = range.first; index <= range.last; ++index)
                    read[static_cast<std::size_t>(index)] = peer.module.Eeprom()[AddressOf(index).value];
        EXPECT_EQ(session.state.EepromBuffer, read);
        ExpectRest();
        return done;
    }

    void ExpectRest() const { EXPECT_FALSE(at.line.IsOpen() || at.test.shell.progressShown); }

    bool repointed = false;  // by somebody else, which no program can notice
    TamperedModule peer;
    ConnectedSession at{peer};
    ModuleEeprom before;
    MatrixUser user;
    Session session{PortsOf(at.session, user, at.line)};
};

TEST(FaultMatrix, AReplyLostAnywhereIsNoSuccess) {
    for (const auto type : {TableType::RACE, TableType::EX}) {
        for (const std::string kind : {"lost-reply=", "late-reply="}) {
            const int uploadReplies = type == TableType::EX ? 1 + 2 * (2 + 183) : 1 + 2 * (1 + 135);
            const int downloadReplies = type == TableType::EX ? 1 + 1 + 288 : 1 + 1 + 135;
            for (int k = 1; k <= uploadReplies + 1; ++k) {
                const auto fault = kind + std::to_string(k);
                SCOPED_TRACE(fault);
                const char* outcome = k == 1                       ? kUnread
                                      : k <= uploadReplies / 2 + 1 ? kUnprogrammed
                                      : k <= uploadReplies         ? kUnverified
                                                                   : kCompleted;
                EXPECT_EQ(Workshop(Options(type, true), fault).Upload(), outcome);
                EXPECT_EQ(Workshop(Options(type, true), fault).Download(), k > downloadReplies);
            }
        }
    }
}

enum class Transfer { Upload, Download, Vin };

bool Succeeds(Workshop& workshop, Transfer transfer) {
    if (transfer == Transfer::Upload) return workshop.Upload() == kCompleted;
    return transfer == Transfer::Download ? workshop.Download() : workshop.EditVin() == kVinDone;
}

// At each moment from the first byte to the last; under the sanitizers closely at the start of each hundred
// alone. A plug that was pulled comes back while its box stands, the ignition having been off and on. A VIN
// is read first, and goes on when that failed.
void StrikeEverywhere(const ModuleOptions& options, const std::string& kind, Answer answer, Transfer transfer,
                      const char* details = "") {
#ifdef __SANITIZE_ADDRESS__
    constexpr int stride = 23;
#else
    constexpr int stride = 1;
#endif
    int k = 0;
    for (int succeeded = 0; succeeded < (transfer == Transfer::Vin ? 40 : 1);
         k += k % 100 < 20 ? 1 : stride) {
        const auto fault = kind + std::to_string(k + 1) + details;
        SCOPED_TRACE(fault + ", " + std::to_string(static_cast<int>(transfer)));
        Workshop workshop(options, fault, answer);
        workshop.user.whileOpen = [&] {
            if (workshop.at.line.IsPresent()) return;
            workshop.at.line.PlugIn();
            workshop.peer.CycleIgnition();
        };
        succeeded = Succeeds(workshop, transfer) ? succeeded + 1 : 0;
        if (testing::Test::HasFailure()) return;
    }
    EXPECT_GT(k, 1) << kind;
}

class FaultMatrixTest : public testing::TestWithParam<Answer> {};

TEST_P(FaultMatrixTest, NoFaultMakesATransferLookDone) {
    // Each with its details, and whether it strikes writes alone.
    const std::tuple<const char*, const char*, bool> kinds[] = {
        {"hang-up=", "", false},         {"silent=", "", false},
        {"power-cycle=", "", false},     {"power-cycle=", ",for=1500,at=192", false},
        {"lost-reply=", "", false},      {"late-reply=", "", false},
        {"refused-address=", "", false}, {"flipped-acknowledge=", "", false},
        {"refused-write=", "", true},    {"lost-data=", "", true}};
    for (const auto& options : {Options(TableType::RACE, false), Options(TableType::EX, true)}) {
        {
            for (const auto transfer : {Transfer::Upload, Transfer::Download, Transfer::Vin}) {
                // A VIN is only taken by modules that echo.
                if (transfer == Transfer::Vin && !options.echo) continue;
                for (const auto& [kind, details, writes] : kinds)
                    if (!writes || transfer != Transfer::Download)
                        StrikeEverywhere(options, kind, GetParam(), transfer, details);
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(EachAnswer, FaultMatrixTest,
                         testing::Values(Answer::Abort, Answer::Ignore, Answer::Retry));

TEST(FaultMatrix, StrayBytesMayDisturbButNotDeceive) {
    for (const bool echo : {true, false})
        for (int k = 1; k <= 273; k += 3)
            Workshop(Options(TableType::RACE, echo), "garbage-before-reply=" + std::to_string(k),
                     Answer::Ignore)
                .Upload();
}

// Another program takes the port at one of its closings, or is plugged in there and moves the module's
// address. An upload never goes on after the former; what the latter has moved is found when it is read back.
TEST(FaultMatrix, WhoComesInBetweenTwoOpeningsIsNoSuccess) {
    for (const auto& options : {Options(TableType::RACE, true), Options(TableType::EX, false)}) {
        const int programmed = options.type == TableType::EX ? 183 : 135;
        for (const auto answer : {Answer::Abort, Answer::Ignore, Answer::Retry}) {
            for (int closing = 1; closing <= 6; ++closing) {
                SCOPED_TRACE(std::string(ToText(options.type)) + ", closing " + std::to_string(closing));
                const auto fails = [&](Workshop& workshop) {
                    workshop.peer.closed = [&, left = closing]() mutable {
                        if (--left == 0) workshop.at.line.FailOpens("Com1 is in use.", 2);
                    };
                };
                Workshop upload(options, {}, answer);
                fails(upload);
                const auto outcome = upload.Upload();
                const auto stored = upload.peer.module.Stored();
                EXPECT_EQ(outcome, upload.at.line.FailedOpens() == 0 ? kCompleted
                                   : stored == programmed            ? kUnverified
                                                                     : kUnprogrammed);
                EXPECT_TRUE(closing > 2 || stored == 0);
                Workshop download(options, {}, answer);
                fails(download);
                const bool taken = download.Download();
                EXPECT_EQ(taken, closing > 2 || (closing == 1 && answer == Answer::Retry));
                if (options.echo) {
                    Workshop vin(options, {}, answer);
                    fails(vin);
                    vin.EditVin();
                }

                Workshop talked(options, "second-talker=" + std::to_string(closing) + ",at=192", answer);
                talked.repointed = true;
                talked.Upload();
            }
        }
    }
}

// A letter of the name that is flipped and seen by the line is no name. One that the line does not see makes
// another name, which the status line shows beside the type that it was taken for.
TEST(FaultMatrix, ADamagedNameIsNoneOrIsTold) {
    const auto options = Options(TableType::EX, true);
    for (int character = 1; character <= 16; ++character) {
        for (int bit = 0; bit < 7; ++bit) {
            const auto fault = "flipped-identification=1,character=" + std::to_string(character) +
                               ",bit=" + std::to_string(bit);
            SCOPED_TRACE(fault);
            Workshop seen(options, fault);
            seen.at.line.OnYield([&, raised = false]() mutable {
                if (!std::exchange(raised, seen.peer.received == 1)) return;
                seen.at.line.Raise(LineCondition::Framing);
            });
            EXPECT_EQ(seen.Upload(), kUnread);
            EXPECT_EQ(seen.peer.module.Stored(), 0);

            Workshop unseen(options, fault);
            unseen.repointed = true;
            const auto& state = unseen.session.state;
            RunCommand(unseen.session, mnuUpload_Click);
            EXPECT_TRUE(unseen.user.told.back() != kCompleted ||
                        state.LastOutcome == "Upload completed: " + state.FirmwareId + ", taken for " +
                                                 std::string(ToText(TypeNamedIn(state.FirmwareId))) + ".");
            unseen.ExpectRest();
        }
    }
}

TEST(FaultMatrix, EchoesAreCountedNotTrusted) {
    using Tamper = void (*)(int, PeerAnswer&);
    using Case = std::tuple<const char*, bool, Tamper, const char*>;
    const Tamper wrong = [](int n, PeerAnswer& a) { a.bytes[0].byte ^= n == 0 ? 0 : 0x41; };
    const Tamper wrongFirst = [](int n, PeerAnswer& a) { a.bytes[0].byte ^= n == 0 ? 1 : 0; };
    const Tamper ending = [](int n, PeerAnswer& a) {
        if (n > 0) a.bytes.erase(a.bytes.begin());
    };
    const Tamper beginning = [](int n, PeerAnswer& a) {
        if (n > 0) a.bytes.insert(a.bytes.begin(), {0x15, {}});
    };
    const Tamper garbage = [](int n, PeerAnswer& a) {
        if (n > 0 && a.bytes.size() > 1) a.bytes.push_back({0x06, {}});
    };
    const Case cases[] = {{"wrong echoes", true, wrong, kCompleted},
                          {"a wrong first echo", true, wrongFirst, kUnprogrammed},
                          {"echoes that end", true, ending, kUnprogrammed},
                          {"echoes that begin", false, beginning, kUnprogrammed},
                          {"garbage after replies", true, garbage, kCompleted}};
    for (const auto& [what, echo, tamper, outcome] : cases) {
        SCOPED_TRACE(what);
        for (const auto type : {TableType::RACE, TableType::EX}) {
            Workshop workshop(Options(type, echo));
            workshop.peer.out = tamper;
            EXPECT_EQ(workshop.Upload(), outcome);
            workshop.peer.received = 0;
            EXPECT_EQ(workshop.Download(), outcome == kCompleted);
        }
    }
}

TEST(FaultMatrix, ABitFlippedOnTheWayOutIsFound) {
    constexpr int sent = 1 + 3 + 2 * 135 + 3 + 135;
    for (int k = 0; k < sent; ++k) {
        Workshop workshop(Options(TableType::RACE, k % 2 == 0));
        // Of an address's high byte the module minds the lowest bit only.
        const int bit = k == 3 || k == 4 + 270 + 2 ? 0 : k % 8;
        workshop.peer.in = [=](int n, std::uint8_t byte) {
            return static_cast<std::uint8_t>(n == k ? byte ^ (1U << bit) : byte);
        };
        // What it does to the EEPROM it does; what is said of it must be so.
        RunCommand(workshop.session, mnuUpload_Click);
        const auto outcome = workshop.user.told.back();
        EXPECT_NE(outcome, kCompleted) << k;
        const bool dataOfWrite = k >= 4 && k < 4 + 270 && k % 2 == 1;
        EXPECT_TRUE(!dataOfWrite || outcome == kUnverified) << k;
        workshop.ExpectRest();
    }
}

TEST(FaultMatrix, IdentificationsOfEveryKind) {
    const std::pair<std::string, const char*> cases[] = {
        {"", kUnread},
        {"\x01\x02\x1F\x80\xFF", kUnread},
        {std::string(5'599, 'x'), kUnread},  // with the byte asked and the last one, just more than a second
        {std::string(5'597, 'x'), kCompleted},
        {"\x01R\x02V\xFF", kCompleted},
        {"RV52A\nEX", "Cannot upload race data to EX version"}};
    for (const auto& [text, outcome] : cases) {
        for (const bool echo : {false, true}) {
            auto options = Options(TableType::RACE, echo);
            options.identification = text;
            EXPECT_EQ(Workshop(options).Upload(), outcome) << text.substr(0, 20);
        }
    }
}

// While a module is read, or what was written is read back, Escape ends it, and closing the window the
// former; while a module is programmed, neither does. Only after a download's last byte they may come too
// late.
TEST(FaultMatrix, EscapeAndClosingAtAnyMoment) {
    for (const auto& [uploading, closing] :
         {std::pair(true, true), {true, false}, {false, true}, {false, false}}) {
        bool struck = true;
        for (int moment = 1; struck; moment += 11) {
            SCOPED_TRACE(moment);
            Workshop workshop(Options(TableType::RACE, true));
            workshop.session.state.AbortRequested = true;  // pressed while idle: without effect
            const auto& panels = workshop.at.test.shell.progress;
            int yields = 0;
            struck = false;
            bool verifying = false;
            bool programming = false;
            std::size_t bytes = 0;
            workshop.at.line.OnYield([&, closes = closing] {
                if (++yields != moment) return;
                struck = true;
                closes ? RequestExit(workshop.session) : EscapePressed(workshop.session);
                programming = !panels.empty();
                verifying = panels.size() == 2;
                bytes = panels.empty() ? 0 : panels.back().percents.size() - 1;
            });
            if (uploading) {
                const auto last = workshop.Upload();
                const bool asked = closing && struck;
                EXPECT_EQ(last, asked       ? "Save advance table before exiting?"
                                : verifying ? kUnverified
                                            : kCompleted);
                EXPECT_FALSE(verifying && workshop.session.state.AbortRequested);
                if (!asked) continue;
                // Before the programming it ends there without a word; from then on all is done and told.
                const auto& told = workshop.user.told;
                EXPECT_EQ(told.size() > 1 ? told.rbegin()[1] : "", programming ? kCompleted : "");
                EXPECT_EQ(workshop.peer.module.Stored(), programming ? 135 : 0);
            } else {
                const bool done = workshop.Download();
                EXPECT_TRUE(done == !struck || bytes == 135);
                EXPECT_TRUE(done || panels.empty() || panels.back().percents.size() <= bytes + 2);
                EXPECT_EQ(workshop.at.test.shell.closed, closing && !done);
                EXPECT_TRUE(done || closing || !workshop.session.state.AbortRequested);
            }
        }
    }
}

}  // namespace
}  // namespace rv52::test
