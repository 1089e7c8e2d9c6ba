#pragma once

#include "app/Leaving.h"
#include "app/RunCommand.h"
#include "app/WindowKeys.h"
#include "app/state/FormResize.h"
#include "link/commands/Vin.h"
#include "module/EepromImage.h"
#include "module/commands/Download.h"
#include "module/commands/Upload.h"
#include "simulator/FaultKinds.h"
#include "soak/SoakUser.h"
#include "soak/WitnessedModule.h"
#include "support/ConnectedSession.h"
#include "support/ShownTable.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <set>

namespace rv52::test {

// What a soak has met with, so that one that met with nothing is noticed.
struct SoakCount {
    long transfers = 0;
    long uploaded = 0;
    long downloaded = 0;
    long vins = 0;
    // What no program can notice on this wire: a damaged letter of the name, and the module programmed as one
    // of the other type; its address moved by somebody else from under a range.
    long misnamed = 0;
    long repointed = 0;
};

// One run of the program, whose user makes a few transfers while everything that can go wrong does so, all by
// the dice; each transfer is judged when it has ended.
class SoakRun {
 public:
    SoakRun(const Dice& dice, SoakCount& count) : dice_(dice), count_(count), calm_(dice_.OneIn(8)) {
        module_.line = &line_;
        HandleLineConditions(session_);
        line_.OnYield([this] { MakeTrouble(); });
        user_.onFailure = [this] { module_.NoteBreak(); };
        user_.onCondition = [this] { module_.NoteCondition(); };
        if (!calm_ && dice_.OneIn(20)) test_.files.contents.erase("/program/RV52_Chart.oc3");
        test_.files.failWrites = dice_.OneIn(4);
        session_.shell.SetCaption(state_.BaseCaption);
    }

    void Run() {
        ConnectSomeModule();
        for (int left = 1 + dice_.Below(kMostTransfers); left > 0 && !shell_.closed; --left) {
            trouble_.clear();
            if (!calm_) {
                if (dice_.OneIn(3)) ConnectSomeModule();
                if (!dice_.OneIn(8)) line_.PlugIn();
                line_.FailOpens("Com1 is in use.", dice_.OneIn(16) ? dice_.Magnitude(8) : 0);
                for (int troubles = dice_.Below(4); troubles > 0; --troubles)
                    trouble_.insert(yields_ + dice_.Magnitude(kYields));
            }
            if (!state_.TableShown && !dice_.OneIn(4)) ShowSomeTable();
            module_.ForgetSeen();
            user_.Forget();
            closing_ = false;
            Transfer();
            CheckAfterwards();
            ++count_.transfers;
        }
    }

 private:
    // What stood before a transfer and must, on some ways out of it, stand after it.
    struct Before {
        AppState state;
        std::string caption;
        std::optional<AdvanceTable> table;
    };

    void ShowSomeTable() {
        AdvanceTable table(dice_.OneIn(2) ? TableType::EX : TableType::RACE);
        Dice values(dice_.Roll());
        ForEachCell(table.Type(), [&](Cell cell) { table.SetCell(cell, values.Below(451) / 10.0); });
        ShowAs(session_, table);
    }

    void ConnectSomeModule() {
        ModuleOptions options(dice_.OneIn(2) ? TableType::EX : TableType::RACE);
        options.echo = dice_.OneIn(2);
        Dice values(dice_.Roll());
        for (auto& byte : options.eeprom.bytes)
            if (values.OneIn(2)) byte = static_cast<std::uint8_t>(values.Roll());
        if (!calm_ && dice_.OneIn(16)) options.identification = "";
        if (!calm_ && dice_.OneIn(16)) options.identification = std::string(5000, 'x');
        std::vector<FaultRequest> faults;
        for (int left = calm_ ? 0 : dice_.Below(3); left > 0; --left)
            faults.push_back({&dice_.Of(FaultKinds()), dice_.Magnitude(kOpportunities)});
        const bool slow = std::ranges::any_of(faults, [](const auto& fault) {
            return fault.kind->name == "slow-reply" || fault.kind->name == "late-reply";
        });
        module_.Connect(options, Faults(faults, dice_.Roll()), slow);
    }

    void MakeTrouble() {
        for (++yields_; !trouble_.empty() && *trouble_.begin() <= yields_; Strike())
            trouble_.erase(trouble_.begin());
    }

    void Strike() {
        const auto raiseSome = [this] {
            for (int left = dice_.Below(6); left > 0; --left)
                line_.Raise(static_cast<LineCondition>(dice_.Below(6)));
        };
        const std::function<void()> strikes[] = {
            [this] { EscapePressed(session_); },
            [this] { closing_ = true, RequestExit(session_); },
            [this] { WindowResized(session_); },
            [this] { RunCommand(session_, dice_.OneIn(2) ? mnuDownload_Click : mnuUpload_Click); },
            [this] { module_.NoteStray(), line_.Inject(dice_.Of(kStrayBytes)); },
            [this] { line_.HangUp(); },
            [this] { line_.Advance(std::chrono::milliseconds(dice_.Magnitude(3000))); },
            raiseSome,
            raiseSome};
        dice_.Of(strikes)();
    }

    void Transfer() {
        using Check = void (SoakRun::*)(const Before&);
        const std::pair<void (*)(Session&), Check> transfers[] = {
            {mnuDownload_Click, &SoakRun::CheckDownload},
            {mnuUpload_Click, &SoakRun::CheckUpload},
            {mnuEditVIN_Click, &SoakRun::CheckVin}};
        const auto [command, check] = dice_.Of(transfers);
        Before before{state_, shell_.caption, std::nullopt};
        if (session_.table.HasTable()) before.table = session_.table.Table();
        const auto eeprom = module_.Module().Eeprom();
        const auto begun = module_.Module().State();
        RunCommand(session_, command);
        conduct_ = module_.TakeConduct();
        (this->*check)(before);
        CheckMemory(command, eeprom, begun);
    }

    // Nothing has changed outside the ranges of the module that is there, but for a byte begun by the command
    // before, and what no program can prevent.
    void CheckMemory(void (*command)(Session&), const ModuleEeprom& before, const ModuleState& begun) {
        EXPECT_EQ(conduct_.sentAfterBreak, 0);
        EXPECT_EQ(conduct_.writtenAfterSilence, 0);
        if (conduct_.repointed) ++count_.repointed;
        const bool misnamed = command == mnuUpload_Click && module_.Module().Eeprom() != before &&
                              TypeNamedIn(state_.FirmwareId) != module_.Options().type;
        if (misnamed) ++count_.misnamed;
        if (conduct_.repointed || misnamed) return;
        const auto& after = module_.Module().Eeprom();
        auto allowed = before;
        if (begun.expecting == ModuleState::Expecting::Data) allowed[begun.address] = after[begun.address];
        std::span<const TransferRange> ranges;
        if (command == mnuUpload_Click) ranges = WriteExtent(module_.Options().type).ranges;
        if (command == mnuEditVIN_Click) ranges = kVinRanges;
        for (const auto& range : ranges)
            for (int offset = 0; offset < range.Count(); ++offset)
                allowed[range.address.value + offset] = after[range.address.value + offset];
        EXPECT_EQ(after, allowed);
    }

    void CheckAfterwards() {
        EXPECT_FALSE(line_.IsOpen() || shell_.progressShown || session_.gate.Busy());
        EXPECT_EQ(test_.view.shown, state_.TableShown);
        EXPECT_FALSE(shell_.closed && !closing_);
        if (!state_.TableShown) return;
        const auto& table = session_.table.Table();
        EXPECT_EQ(state_.TableType, table.Type());
        EXPECT_EQ(session_.sheet.RowCountWithHeader(), table.RowCount() + 1);
    }

    // Closing may have saved, or shut, the table by now.
    void ExpectUnchanged(const Before& before) {
        EXPECT_TRUE(closing_ ||
                    (shell_.caption == before.caption && state_.TableShown == before.state.TableShown));
        EXPECT_EQ(state_.TableType, before.state.TableType);
        EXPECT_EQ(state_.ModuleParameters, before.state.ModuleParameters);
        EXPECT_TRUE(!before.table || session_.table.Table() == *before.table);
    }

    void CheckDownload(const Before& before) {
        const auto answered = [&](Answer answer) {
            return user_.Answered("Save advance table before downloading?", answer);
        };
        if (answered(Answer::Cancel)) return ExpectUnchanged(before);
        const bool identified = user_.WasTold("Firmware ID: " + state_.FirmwareId);
        const auto named = TypeNamedIn(state_.FirmwareId);
        if (identified)
            EXPECT_EQ(state_.TableType, named);
        else
            EXPECT_TRUE(closing_ || state_.TableType == before.state.TableType || state_.FirmwareId.empty());

        if (state_.TableShown && (!answered(Answer::Yes) || shell_.caption.ends_with("Downloaded Data"))) {
            ++count_.downloaded;
            EXPECT_TRUE(identified);
            EXPECT_TRUE(closing_ || shell_.caption == state_.BaseCaption + " - Downloaded Data");
            ExpectSeen(ReadExtent(named).ranges, state_.EepromBuffer);
            ModuleParameters parameters;
            EXPECT_EQ(session_.table.Table(), DecodeEepromImage(state_.EepromBuffer, named, parameters));
            EXPECT_EQ(state_.ModuleParameters, parameters);
            return;
        }
        EXPECT_FALSE(calm_);
        EXPECT_FALSE(state_.TableShown);
        const bool untemplated = user_.WasTold("Chart template file RV52_Chart.oc3 not found.");
        EXPECT_TRUE(closing_ ||
                    shell_.caption == state_.BaseCaption + (untemplated ? "" : " - Data Buffer Empty"));
        auto parameters = before.state.ModuleParameters;
        if (untemplated) DecodeEepromImage(state_.EepromBuffer, named, parameters);
        EXPECT_EQ(state_.ModuleParameters, parameters);
        EXPECT_TRUE(untemplated || state_.EepromBuffer == EepromBuffer{});
    }

    void CheckUpload(const Before& before) {
        ExpectUnchanged(before);
        const auto module = TypeNamedIn(state_.FirmwareId);
        const bool refused = user_.WasTold("Cannot upload race data to EX version");
        const bool completed = user_.WasTold("Upload completed.");
        EXPECT_TRUE(completed || !calm_ || refused || !before.state.TableShown) << "nothing went wrong";
        if (!completed) return;
        ++count_.uploaded;
        ASSERT_TRUE(before.state.TableShown && before.table);
        EepromBuffer wanted{};
        EncodeEepromImage(*before.table, before.state.ModuleParameters, module, wanted);
        ExpectSeen(WriteExtent(module).ranges, wanted);
    }

    void CheckVin(const Before& before) {
        EXPECT_EQ(state_.TableType, before.state.TableType);
        if (!user_.WasTold("Upload completed.\r\n")) return;
        ++count_.vins;
        const auto codes = VinCodes(state_.Vin);
        ASSERT_TRUE(codes);
        EepromBuffer wanted{};
        std::copy(codes->begin(), codes->end(), wanted.begin() + kVinRanges.front().first);
        ExpectSeen(kVinRanges, wanted);
    }

    void ExpectSeen(std::span<const TransferRange> ranges, const EepromBuffer& wanted) {
        using Seen = WitnessedModule::Seen;
        if (conduct_.repointed) return;
        for (const auto& range : ranges) {
            for (int offset = 0; offset < range.Count(); ++offset) {
                const int address = range.address.value + offset;
                const auto held = module_.Module().Eeprom()[address];
                const auto seen = module_.SeenAt(address);
                EXPECT_NE(seen, Seen::No) << address;
                EXPECT_TRUE(seen != Seen::AsItIs || held == wanted.at(std::size_t(range.first + offset)))
                    << address;
            }
        }
    }

    static constexpr int kMostTransfers = 5;
    // A whole upload to an EX module yields so often, and has so many moments at which a fault can strike.
    static constexpr int kYields = 6000;
    static constexpr int kOpportunities = 1200;
    static constexpr std::uint8_t kStrayBytes[] = {0x06, 0x0D, 0x10, 0x15, 0x16, 'E', 'X', 0x00, 0xFF};

    Dice dice_;
    SoakCount& count_;
    WitnessedModule module_;
    VirtualLine line_{module_};
    SoakUser user_{dice_, line_};
    TestSession test_{line_};
    RecordingShell& shell_ = test_.shell;
    Session session_{PortsOf(test_.session, user_, line_)};
    AppState& state_ = session_.state;
    bool calm_;                         // nothing will go wrong
    bool closing_ = false;              // the window has been asked to close
    WitnessedModule::Conduct conduct_;  // of the last transfer
    long yields_ = 0;
    std::multiset<long> trouble_;  // the yields at which it comes
};

}  // namespace rv52::test
