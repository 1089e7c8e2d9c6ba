#include "link/EepromTransfer.h"

#include "app/Session.h"
#include "link/ModuleProtocol.h"
#include "link/RangeLoop.h"
#include "module/EepromImage.h"
#include "table/Numbers.h"

#include <algorithm>

namespace rv52 {

namespace {

using namespace std::chrono_literals;

constexpr auto kStoredPause = 2ms;

int Percent(int position, const TransferExtent& extent) {
    return std::clamp(static_cast<int>(RoundHalfEven(100.0 * position / extent.fullPosition)), 0, 100);
}

// Runs a transfer under its progress panel. False when it ended early or was abandoned.
bool RunShown(Session& session, const char* caption, const TransferExtent& extent, RangeLoop loop) {
    bool complete = false;
    int position = 0;
    loop.count = [&] {
        session.steps([&] { session.shell.SetProgress(Percent(position, extent)); });
        ++position;
    };
    session.steps.Procedure([&](Steps& step) {
        step([&] { session.shell.ShowProgress(caption); });
        complete = RunRanges(session, extent.ranges, loop);
    });
    session.shell.HideProgress();
    return complete;
}

}  // namespace

void ReadEEPROMData(Session& session) {
    auto& state = session.state;
    ClearEEPROMBuffer(state.EepromBuffer);
    auto loop = ReadLoop(session);
    loop.settle = [&, goOn = loop.settle] {
        if (!goOn()) return false;
        DelayTimer(session, kStoredPause);
        return true;
    };
    const bool complete = RunShown(session, "Reading EEPROM", ReadExtent(state.TableType), loop);
    if (!complete) state.AbortRequested = false;
    state.CommOK = complete;
    session.line.Close();
}

void WriteEEPROMData(Session& session) {
    auto& state = session.state;
    const auto loop = WriteLoop(session, state.EchoMode ? kWriteEchoes : 0);
    const bool acknowledged = RunShown(session, "Programming EEPROM", WriteExtent(state.TableType), loop);
    if (acknowledged) VerifyEEPROM(session);
    state.CommOK = acknowledged;
    session.line.Close();
}

void VerifyEEPROM(Session& session) {
    Verification verification(session);
    verification.Judge(
        RunShown(session, "Verifying EEPROM", WriteExtent(session.state.TableType), verification.Loop()));
    session.line.Close();
}

}  // namespace rv52
