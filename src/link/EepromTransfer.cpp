#include "link/EepromTransfer.h"

#include "app/Session.h"
#include "link/ModuleProtocol.h"
#include "link/RangeLoop.h"
#include "module/EepromImage.h"
#include "table/Numbers.h"

#include <algorithm>
#include <utility>

namespace rv52 {

namespace {

using namespace std::chrono_literals;

constexpr auto kStoredPause = 2ms;

std::uint8_t& ByteAt(Session& session, int index) {
    return session.state.EepromBuffer.at(static_cast<std::size_t>(index));
}

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
    RangeLoop loop;
    loop.addressed = [&] { return std::exchange(state.CommOK, false); };
    loop.move = [&](int index) {
        ByteAt(session, index) = ReadEEPROM(session).value_or(0);
        return true;
    };
    loop.settle = [&] {
        if (!GoOnReading(session)) return false;
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
    RangeLoop loop;
    // An address that was acknowledged says nothing about the bytes that follow it.
    loop.addressed = [&] {
        if (!std::exchange(state.CommOK, false)) return false;
        OpenLine(session);
        return true;
    };
    loop.move = [&](int index) {
        return WriteEEPROM(session, ByteAt(session, index), state.EchoMode ? kWriteEchoes : 0);
    };
    loop.settle = [] { return true; };
    const bool acknowledged = RunShown(session, "Programming EEPROM", WriteExtent(state.TableType), loop);
    if (acknowledged) VerifyEEPROM(session);
    state.CommOK = acknowledged;
    session.line.Close();
}

void VerifyEEPROM(Session& session) {
    auto& state = session.state;
    state.AbortRequested = false;
    state.VerifyErrors = 0;
    bool addressed = true;
    RangeLoop loop;
    loop.addressed = [&] {
        addressed = addressed && state.CommOK;
        return true;
    };
    loop.move = [&](int index) {
        if (ReadEEPROM(session) != ByteAt(session, index)) ++state.VerifyErrors;
        return true;
    };
    loop.settle = [&] { return GoOnReading(session); };
    const bool complete = RunShown(session, "Verifying EEPROM", WriteExtent(state.TableType), loop);
    // A verify that could not look, or looked at a place that the module never confirmed, has failed.
    if (!complete || !addressed) ++state.VerifyErrors;
    if (!complete) state.AbortRequested = false;
    session.line.Close();
}

}  // namespace rv52
