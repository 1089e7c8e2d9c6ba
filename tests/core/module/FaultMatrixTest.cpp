#include "app/Leaving.h"
#include "app/WindowKeys.h"
#include "module/TamperedTransfer.h"

#include <gtest/gtest.h>
#include <tuple>

namespace rv52::test {
namespace {

enum class Transfer { Upload, Download, Vin };

bool Succeeds(TamperedTransfer& workshop, Transfer transfer) {
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
        TamperedTransfer workshop(options, fault, answer);
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
        for (const auto transfer : {Transfer::Upload, Transfer::Download, Transfer::Vin}) {
            // A VIN is only taken by modules that echo.
            if (transfer == Transfer::Vin && !options.echo) continue;
            for (const auto& [kind, details, writes] : kinds)
                if (!writes || transfer != Transfer::Download)
                    StrikeEverywhere(options, kind, GetParam(), transfer, details);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(EachAnswer, FaultMatrixTest,
                         testing::Values(Answer::Abort, Answer::Ignore, Answer::Retry));

TEST(FaultMatrix, StrayBytesMayDisturbButNotDeceive) {
    for (int k = 1; k <= 273; ++k) {
        const auto fault = "garbage-before-reply=" + std::to_string(k);
        SCOPED_TRACE(fault);
        TamperedTransfer(Options(TableType::RACE, k % 2 == 0), fault, Answer::Ignore).Upload();
    }
}

// Another program takes the port at one of its closings, or is plugged in there and moves the module's
// address. An upload never goes on after the former; what the latter has moved is found when it is read back.
TEST(FaultMatrix, WhoComesInBetweenTwoOpeningsIsNoSuccess) {
    for (const auto& options : {Options(TableType::RACE, true), Options(TableType::EX, false)}) {
        const int programmed = options.type == TableType::EX ? 183 : 135;
        for (const auto answer : {Answer::Abort, Answer::Ignore, Answer::Retry}) {
            for (int closing = 1; closing <= 6; ++closing) {
                SCOPED_TRACE(std::string(ToText(options.type)) + ", closing " + std::to_string(closing));
                const auto fails = [&](TamperedTransfer& workshop) {
                    workshop.peer.closed = [&, left = closing]() mutable {
                        if (--left == 0) workshop.at.line.FailOpens("Com1 is in use.", 2);
                    };
                };
                TamperedTransfer upload(options, {}, answer);
                fails(upload);
                const auto outcome = upload.Upload();
                const auto stored = upload.peer.module.Stored();
                const auto* failure = stored == programmed ? kUnverified : kUnprogrammed;
                EXPECT_EQ(outcome, upload.at.line.FailedOpens() == 0 ? kCompleted : failure);
                EXPECT_TRUE(closing > 2 || stored == 0) << stored;
                TamperedTransfer download(options, {}, answer);
                fails(download);
                EXPECT_EQ(download.Download(), closing > 2 || (closing == 1 && answer == Answer::Retry));
                TamperedTransfer vin(options, {}, answer);
                fails(vin);
                if (options.echo) vin.EditVin();

                const auto talker = "second-talker=" + std::to_string(closing) + ",at=192";
                TamperedTransfer talked(options, talker, answer);
                talked.repointed = true;
                talked.Upload();
            }
        }
    }
}

// A letter of the name that is flipped and not noticed by the line makes another name, which the status line
// shows beside the type that it was taken for.
TEST(FaultMatrix, ADamagedNameIsNoneOrIsTold) {
    for (int character = 1; character <= 16; ++character) {
        for (int bit = 0; bit < 7; ++bit) {
            const auto fault = "flipped-identification=1,character=" + std::to_string(character) +
                               ",bit=" + std::to_string(bit);
            SCOPED_TRACE(fault);
            TamperedTransfer workshop(Options(TableType::EX, true), fault);
            const auto& state = workshop.session.state;
            RunCommand(workshop.session, mnuUpload_Click);
            workshop.ExpectRest();
            if (workshop.user.told.back() != kCompleted) continue;
            EXPECT_EQ(state.LastOutcome, "Upload completed: " + state.FirmwareId + ", taken for " +
                                             std::string(ToText(TypeNamedIn(state.FirmwareId))) + ".");
        }
    }
}

TEST(FaultMatrix, EchoesAreCountedNotTrusted) {
    // Each is told how many bytes have come in before; the first is the request for identification.
    using Tamper = void (*)(int, PeerAnswer&);
    const Tamper wrong = [](int n, PeerAnswer& a) { a.bytes[0].byte ^= n == 0 ? 0 : 0x41; };
    const Tamper wrongFirst = [](int n, PeerAnswer& a) { a.bytes[0].byte ^= n == 0 ? 1 : 0; };
    const Tamper ending = [](int n, PeerAnswer& a) {
        a.bytes.erase(a.bytes.begin(), a.bytes.begin() + (n > 0));
    };
    const Tamper beginning = [](int n, PeerAnswer& a) { a.bytes.insert(a.bytes.begin(), n > 0, {0x15, {}}); };
    const Tamper garbage = [](int n, PeerAnswer& a) {
        if (n > 0 && a.bytes.size() > 1) a.bytes.push_back({0x06, {}});
    };
    const std::tuple<const char*, bool, Tamper, const char*> cases[] = {
        {"wrong echoes", true, wrong, kCompleted},
        {"a wrong first echo", true, wrongFirst, kUnprogrammed},
        {"echoes that end", true, ending, kUnprogrammed},
        {"echoes that begin", false, beginning, kUnprogrammed},
        {"garbage after replies", true, garbage, kCompleted}};
    for (const auto& [what, echo, tamper, outcome] : cases) {
        SCOPED_TRACE(what);
        for (const auto type : {TableType::RACE, TableType::EX}) {
            TamperedTransfer workshop(Options(type, echo));
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
        TamperedTransfer workshop(Options(TableType::RACE, k % 2 == 0));
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

// While a module is read, or what was written is read back, Escape ends it, and closing the window the
// former; while a module is programmed, neither does. Only after a download's last byte they may come too
// late.
TEST(FaultMatrix, EscapeAndClosingAtAnyMoment) {
    for (const auto& [uploading, closing] :
         {std::pair(true, true), {true, false}, {false, true}, {false, false}}) {
        bool struck = true;
        for (int moment = 1; struck; moment += 11) {
            SCOPED_TRACE(moment);
            TamperedTransfer workshop(Options(TableType::RACE, true));
            workshop.session.state.AbortRequested = true;  // pressed while idle: without effect
            const auto& panels = workshop.at.test.shell.progress;
            int yields = 0;
            std::size_t panelsThen = 0;  // one while a module is read or programmed, two while it is verified
            std::size_t bytes = 0;
            workshop.at.line.OnYield([&, closes = closing] {
                if (++yields != moment) return;
                closes ? RequestExit(workshop.session) : EscapePressed(workshop.session);
                panelsThen = panels.size();
                bytes = panels.empty() ? 0 : panels.back().percents.size() - 1;
            });
            if (uploading) {
                const auto last = workshop.Upload();
                struck = yields >= moment;
                const bool verifying = panelsThen == 2;
                EXPECT_FALSE(verifying && workshop.session.state.AbortRequested);
                const bool asked = closing && struck;
                const char* ended = verifying ? kUnverified : kCompleted;
                EXPECT_EQ(last, asked ? "Save advance table before exiting?" : ended);
                if (!asked) continue;
                // Before the programming it ends there without a word; from then on all is done and told.
                const auto& told = workshop.user.told;
                EXPECT_EQ(told.size() > 1 ? told.rbegin()[1] : "", panelsThen > 0 ? kCompleted : "");
                EXPECT_EQ(workshop.peer.module.Stored(), panelsThen > 0 ? 135 : 0);
            } else {
                const bool done = workshop.Download();
                struck = yields >= moment;
                EXPECT_TRUE(done == !struck || bytes == 135) << bytes;
                EXPECT_EQ(workshop.at.test.shell.closed, closing && !done);
                if (done) continue;
                EXPECT_TRUE(panels.empty() || panels.back().percents.size() <= bytes + 2) << bytes;
                EXPECT_TRUE(closing || !workshop.session.state.AbortRequested) << "Escape is spent";
            }
        }
    }
}

}  // namespace
}  // namespace rv52::test
