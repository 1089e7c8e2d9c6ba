#include "app/Commands.h"
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

constexpr const char* kCompleted = "Upload completed.";
constexpr const char* kUnread = "Firmware ID read failed - cannot upload.";
constexpr const char* kUnprogrammed = "Upload aborted - EEPROM programming failed.";
constexpr const char* kUnverified = "Upload aborted - EEPROM verification failed.";

// A module with someone at its plug, who may change each byte on its way in and each answer on its way out;
// both are told how many bytes have come in before.
struct TamperedModule : Peer {
    explicit TamperedModule(const ModuleOptions& options, Faults faults = {})
        : module(options, std::move(faults)) {}

    PeerAnswer Receive(std::uint8_t byte) override {
        auto answer = module.Receive(in ? in(received, byte) : byte);
        if (out) out(received, answer);
        ++received;
        return answer;
    }

    SimulatedModule module;
    std::function<std::uint8_t(int, std::uint8_t)> in;
    std::function<void(int, PeerAnswer&)> out;
    int received = 0;
};

// The program connected to it, with the pattern's table on screen and a user who closes every box.
struct Workshop {
    explicit Workshop(TamperedModule& peer, TableType type)
        : at(peer),
          module(peer.module),
          before(peer.module.Eeprom()),
          session({at.line, user, at.session.view, at.session.shell, at.session.files, at.session.settings,
                   at.session.printer}) {
        session.table.Replace(DecodeEepromImage(PatternBuffer(), type, session.state.ModuleParameters));
        session.state.TableType = type;
        SetUpTableGrid(session, type);
        ShowTable(session);
    }

    // What the user read last. Nothing that is so for every outcome may be otherwise.
    std::string Upload() {
        const auto type = session.state.TableType;
        RunCommand(session, mnuUpload_Click);
        const auto outcome = user.told.empty() ? "" : user.told.back();
        EXPECT_EQ(outcome == kCompleted,
                  module.Eeprom() == Programmed(before, type) && outcome == kCompleted);
        EXPECT_EQ(session.state.TableType, type);
        EXPECT_TRUE(session.state.TableShown);
        ExpectRest();
        return outcome;
    }

    // True when the table was downloaded, which is then the module's; else the screen is empty.
    bool Download() {
        HideTable(session);
        RunCommand(session, mnuDownload_Click);
        const bool done = at.test.shell.caption.ends_with(" - Downloaded Data");
        EXPECT_EQ(session.state.TableShown, done);
        if (done) {
            for (const auto& range : ReadExtent(session.state.TableType).ranges)
                for (int index = range.first; index <= range.last; ++index)
                    EXPECT_EQ(session.state.EepromBuffer[static_cast<std::size_t>(index)],
                              module.Eeprom()[AddressOf(index).value]);
        } else {
            EXPECT_EQ(session.state.EepromBuffer, EepromBuffer{});
        }
        ExpectRest();
        return done;
    }

    void ExpectRest() const {
        EXPECT_FALSE(at.line.IsOpen());
        EXPECT_FALSE(at.test.shell.progressShown);
    }

    ConnectedSession at;
    SimulatedModule& module;
    ModuleEeprom before;
    DismissingUser user;
    Session session;
};

TEST(FaultMatrixTest, AReplyLostAnywhereIsNoSuccess) {
    for (const auto type : {TableType::RACE, TableType::EX}) {
        for (const std::string fault : {"lost-reply=", "late-reply="}) {
            const int uploadReplies = type == TableType::EX ? 1 + 2 * (2 + 183) : 1 + 2 * (1 + 135);
            const int downloadReplies = type == TableType::EX ? 1 + 1 + 288 : 1 + 1 + 135;
            for (int k = 1; k <= uploadReplies + 1; ++k) {
                SCOPED_TRACE(fault + std::to_string(k));
                TamperedModule peer(Options(type, true), Faults({fault + std::to_string(k)}, 1));
                const char* outcome = k == 1                       ? kUnread
                                      : k <= uploadReplies / 2 + 1 ? kUnprogrammed
                                      : k <= uploadReplies         ? kUnverified
                                                                   : kCompleted;
                EXPECT_EQ(Workshop(peer, type).Upload(), outcome);
                TamperedModule other(Options(type, true), Faults({fault + std::to_string(k)}, 1));
                EXPECT_EQ(Workshop(other, type).Download(), k > downloadReplies);
            }
        }
    }
}

TEST(FaultMatrixTest, EchoesAreCountedNotTrusted) {
    using Case = std::tuple<const char*, bool, std::function<void(int, PeerAnswer&)>, const char*>;
    const Case cases[] = {{"wrong echoes", true,
                           [](int n, PeerAnswer& a) { a.bytes[0].byte ^= n == 0 ? 0 : 0x41; }, kCompleted},
                          {"a wrong first echo", true,
                           [](int n, PeerAnswer& a) { a.bytes[0].byte ^= n == 0 ? 1 : 0; }, kUnprogrammed},
                          {"echoes that end", true,
                           [](int n, PeerAnswer& a) {
                               if (n > 0) a.bytes.erase(a.bytes.begin());
                           },
                           kUnprogrammed},
                          {"echoes that begin", false,
                           [](int n, PeerAnswer& a) {
                               if (n > 0) a.bytes.insert(a.bytes.begin(), {0x15, {}});
                           },
                           kUnprogrammed},
                          {"garbage after replies", true,
                           [](int n, PeerAnswer& a) {
                               if (n > 0 && a.bytes.size() > 1) a.bytes.push_back({0x06, {}});
                           },
                           kCompleted}};
    for (const auto& [what, echo, out, outcome] : cases) {
        SCOPED_TRACE(what);
        for (const auto type : {TableType::RACE, TableType::EX}) {
            TamperedModule peer(Options(type, echo));
            peer.out = out;
            Workshop workshop(peer, type);
            EXPECT_EQ(workshop.Upload(), outcome);
            peer.received = 0;
            EXPECT_EQ(workshop.Download(), outcome == kCompleted);
        }
    }
}

TEST(FaultMatrixTest, ABitFlippedOnTheWayOutIsFound) {
    constexpr int sent = 1 + 3 + 2 * 135 + 3 + 135;
    for (int k = 0; k < sent; ++k) {
        TamperedModule peer(Options(TableType::RACE, k % 2 == 0));
        // Of an address's high byte the module minds the lowest bit only.
        const int bit = k == 3 || k == 4 + 270 + 2 ? 0 : k % 8;
        peer.in = [=](int n, std::uint8_t byte) {
            return static_cast<std::uint8_t>(n == k ? byte ^ (1U << bit) : byte);
        };
        const auto outcome = Workshop(peer, TableType::RACE).Upload();
        EXPECT_NE(outcome, kCompleted) << k;
        const bool dataOfWrite = k >= 4 && k < 4 + 270 && k % 2 == 1;
        EXPECT_TRUE(!dataOfWrite || outcome == kUnverified) << k;
    }
}

TEST(FaultMatrixTest, IdentificationsOfEveryKind) {
    const std::pair<std::string, const char*> cases[] = {
        {"", kUnread},
        {"\x01\x02\x1F\x80\xFF", kUnread},
        {std::string(10'000, 'x'), kUnread},  // longer than a second takes
        {std::string(5'000, 'x'), kCompleted},
        {"\x01R\x02V\xFF", kCompleted},
        {"RV52A\nEX", "Cannot upload race data to EX version"},
        {"V8ex1", "Cannot upload race data to EX version"}};
    for (const auto& [text, outcome] : cases) {
        for (const bool echo : {false, true}) {
            auto options = Options(TableType::RACE, echo);
            options.identification = text;
            TamperedModule peer(options);
            EXPECT_EQ(Workshop(peer, TableType::RACE).Upload(), outcome) << text.substr(0, 20);
        }
    }
}

// While a module is read, or what was written is read back, Escape ends it; while a module is programmed,
// it does nothing. Only after a download's last byte it may come too late.
TEST(FaultMatrixTest, EscapeAtAnyMoment) {
    for (const bool uploading : {true, false}) {
        bool pressed = true;
        for (int moment = 1; pressed; moment += 11) {
            TamperedModule peer(Options(TableType::RACE, true));
            Workshop workshop(peer, TableType::RACE);
            const auto& panels = workshop.at.test.shell.progress;
            int yields = 0;
            pressed = false;
            bool verifying = false;
            std::size_t bytes = 0;
            workshop.at.line.OnYield([&] {
                if (++yields != moment) return;
                pressed = true;
                EscapePressed(workshop.session);
                verifying = panels.size() == 2;
                bytes = panels.empty() ? 0 : panels.back().percents.size() - 1;
            });
            if (uploading) {
                const auto outcome = workshop.Upload();
                EXPECT_EQ(outcome, verifying ? kUnverified : kCompleted) << moment;
            } else {
                const bool done = workshop.Download();
                EXPECT_TRUE(done == !pressed || bytes == 135) << moment;
            }
        }
    }
}

}  // namespace
}  // namespace rv52::test
