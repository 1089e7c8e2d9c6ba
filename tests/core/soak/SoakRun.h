#pragma once

#include "app/Session.h"
#include "module/EepromMap.h"
#include "soak/SoakUser.h"
#include "soak/WitnessedModule.h"
#include "support/Recorders.h"
#include "support/RecordingPrinter.h"

#include <set>

namespace rv52::test {

// What a soak has met with, so that one that met with nothing is noticed.
struct SoakCount {
    long transfers = 0;
    long uploaded = 0;
    long downloaded = 0;
    long vins = 0;
    long refused = 0;
    long lineErrors = 0;
};

// One run of the program, whose user makes a few transfers while everything that can go wrong does so, all by
// the seed; each transfer is judged when it has ended.
class SoakRun {
 public:
    SoakRun(std::uint64_t seed, const MemoryFiles& shipped, SoakCount& count);

    void Run();

 private:
    // What stood before a transfer and must, on some ways out of it, stand after it.
    struct Before {
        TableType type;
        bool shown;
        std::string caption;
        ModuleParameters parameters;
        std::optional<AdvanceTable> table;
    };

    void ShowSomeTable();
    void ConnectSomeModule();
    void PlanTrouble();
    void MakeTrouble();
    void Strike();

    void Transfer();
    void JudgeRest(std::size_t panels);
    void JudgeDownload(const Before& before);
    void JudgeUpload(const Before& before);
    void JudgeVin(const Before& before);
    void ExpectSeen(std::span<const TransferRange> ranges, const EepromBuffer& wanted);

    Dice dice_;
    SoakCount& count_;
    WitnessedModule module_;
    VirtualLine line_{module_};
    SoakUser user_{dice_, line_};
    RecordingView view_;
    RecordingShell shell_;
    MemoryFiles files_;
    MemorySettings settings_;
    RecordingPrinter printer_;
    Session session_{Ports{line_, user_, view_, shell_, files_, settings_, printer_}};
    AppState& state_ = session_.state;
    bool calm_;             // nothing will go wrong
    bool closing_ = false;  // the window has been asked to close
    long yields_ = 0;
    std::multiset<long> trouble_;  // the yields at which it comes
};

}  // namespace rv52::test
