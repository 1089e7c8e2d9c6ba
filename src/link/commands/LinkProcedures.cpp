#include "link/commands/LinkProcedures.h"

#include "app/state/Session.h"
#include "link/LinkTexts.h"
#include "link/WireProtocol.h"
#include "link/commands/ProgressAndCancel.h"
#include "module/EepromImage.h"
#include "platform/CodePage.h"

#include <algorithm>
#include <utility>

namespace rv52 {

namespace {

using FailedOpen = ModuleLink::FailedOpen;

constexpr const auto& kVin = kVinRanges.front();

ModuleAt TheModule(const AppState& state) {
    return {state.CommPort, state.EchoMode};
}

// Modules that take a VIN echo, so the echoes are waited for whatever the identification told.
ModuleAt TheVinModule(const AppState& state) {
    return {state.CommPort, true};
}

std::span<std::uint8_t> BytesOf(AppState& state, const TransferRange& range) {
    return std::span(state.EepromBuffer)
        .subspan(static_cast<std::size_t>(range.first), static_cast<std::size_t>(range.Count()));
}

LinkOutcome Address(Session& session, const TransferRange& range, FailedOpen failedOpen) {
    auto& state = session.state;
    state.CommOK = false;
    const auto outcome = session.link.SetAddress(TheModule(state), range.address, failedOpen);
    state.CommOK = outcome == LinkOutcome::Done;
    return outcome;
}

// An address that was acknowledged says nothing about the bytes that follow it.
bool TakeAcknowledge(Session& session) {
    return std::exchange(session.state.CommOK, false);
}

void BeginVerify(AppState& state) {
    state.AbortRequested = false;
    state.VerifyErrors = 0;
}

void EndVerify(AppState& state, bool complete) {
    if (complete) return;
    ++state.VerifyErrors;
    state.AbortRequested = false;
}

// Compares what the module holds with the buffer. A verify whose address was not acknowledged looks all the
// same, but has failed. False when it ended early.
bool VerifyRanges(Session& session, std::span<const TransferRange> ranges, FailedOpen failedOpen,
                  ProgressAndCancel& progress) {
    auto& state = session.state;
    bool addressed = true;
    for (const auto& range : ranges) {
        const auto outcome = Address(session, range, failedOpen);
        if (outcome == LinkOutcome::LineLost) return false;
        addressed = TakeAcknowledge(session) && addressed;
        const auto [ended, differences] = session.link.VerifyRange(TheModule(state), BytesOf(state, range),
                                                                   [&] { return progress.AfterRead(); });
        state.VerifyErrors = static_cast<std::int16_t>(state.VerifyErrors + differences);
        state.CommOK = ended == LinkOutcome::Done;
        if (!state.CommOK) return false;
    }
    if (!addressed) ++state.VerifyErrors;
    return true;
}

}  // namespace

void ReadFirmwareID(Session& session) {
    auto& state = session.state;
    state.CommOK = false;
    const auto [outcome, text, echoes] = session.link.Identify(state.CommPort);
    if (text) state.FirmwareId = *text;
    if (echoes) state.EchoMode = *echoes;
    if (outcome != LinkOutcome::Done) return;
    state.TableType = TypeNamedIn(state.FirmwareId);
    state.CommOK = !state.FirmwareId.empty();
}

void SetEEPROMAddress(Session& session, EepromAddress address) {
    Address(session, {address}, FailedOpen::Asks);
}

void ReadEEPROMData(Session& session) {
    auto& state = session.state;
    const auto extent = ReadExtent(state.TableType);
    bool complete = false;
    session.steps.Procedure([&](Steps&) {
        ProgressAndCancel progress(session, LinkWork::Reading);
        progress.ShowPanel("Reading EEPROM", extent.fullPosition);
        ClearEEPROMBuffer(state.EepromBuffer);
        complete = std::ranges::all_of(extent.ranges, [&](const TransferRange& range) {
            SetEEPROMAddress(session, range.address);
            if (!TakeAcknowledge(session)) return false;
            const auto stored = [&] {
                if (!progress.AfterRead()) return false;
                DelayTimer(session, WireTimes::kAfterStoring);
                return true;
            };
            return session.link.ReadRange(TheModule(state), BytesOf(state, range), stored) ==
                   LinkOutcome::Done;
        });
    });
    if (!complete) state.AbortRequested = false;
    state.CommOK = complete;
    session.line.Close();
}

void WriteEEPROMData(Session& session) {
    auto& state = session.state;
    const auto extent = WriteExtent(state.TableType);
    bool acknowledged = false;
    session.steps.Procedure([&](Steps&) {
        ProgressAndCancel progress(session, LinkWork::Programming);
        progress.ShowPanel("Programming EEPROM", extent.fullPosition);
        acknowledged = std::ranges::all_of(extent.ranges, [&](const TransferRange& range) {
            Address(session, range, FailedOpen::Ends);
            if (!TakeAcknowledge(session)) return false;
            return session.link.WriteRange(TheModule(state), BytesOf(state, range), LinkTexts::kNoAnswer,
                                           [&] { return progress.AfterWrite(); }) == LinkOutcome::Done;
        });
    });
    if (acknowledged) VerifyEEPROM(session);
    state.CommOK = acknowledged;
    session.line.Close();
}

void VerifyEEPROM(Session& session) {
    auto& state = session.state;
    const auto extent = WriteExtent(state.TableType);
    bool complete = false;
    BeginVerify(state);
    session.steps.Procedure([&](Steps&) {
        ProgressAndCancel progress(session, LinkWork::Verifying);
        progress.ShowPanel("Verifying EEPROM", extent.fullPosition);
        complete = VerifyRanges(session, extent.ranges, FailedOpen::Ends, progress);
    });
    EndVerify(state, complete);
    session.line.Close();
}

std::optional<std::string> VinCodes(std::string_view vin) {
    auto codes = ToCodePage(vin);
    return codes && codes->size() == std::size_t{kVinRanges.front().Count()} ? codes : std::nullopt;
}

void ReadVINData(Session& session) {
    auto& state = session.state;
    const auto bytes = BytesOf(state, kVin);
    bool complete = false;
    state.AbortRequested = false;
    session.steps.Procedure([&](Steps&) {
        ProgressAndCancel progress(session, LinkWork::Reading);
        SetEEPROMAddress(session, kVin.address);
        if (!TakeAcknowledge(session)) return;
        const auto outcome =
            session.link.ReadRange(TheModule(state), bytes, [&] { return progress.AfterRead(); });
        if (outcome != LinkOutcome::Done) return;
        state.Vin = FromCodePage(std::string(bytes.begin(), bytes.end()));
        complete = true;
        DelayTimer(session, WireTimes::kAfterVin);
    });
    if (!complete) state.AbortRequested = false;
    state.CommOK = complete;
    session.line.Close();
}

void WriteVINData(Session& session) {
    auto& state = session.state;
    state.CommOK = false;
    const auto codes = VinCodes(state.Vin);
    if (!codes) return;
    const auto bytes = BytesOf(state, kVin);
    std::ranges::copy(*codes, bytes.begin());
    bool acknowledged = false;
    session.steps.Procedure([&](Steps&) {
        ProgressAndCancel progress(session, LinkWork::Programming);
        SetEEPROMAddress(session, kVin.address);
        if (!TakeAcknowledge(session)) return;
        acknowledged = session.link.WriteRange(TheVinModule(state), bytes, LinkTexts::kNoAnswerToVin,
                                               [&] { return progress.AfterWrite(); }) == LinkOutcome::Done;
    });
    if (acknowledged) {
        VerifyVIN(session);
        session.steps.Procedure([&](Steps&) { DelayTimer(session, WireTimes::kAfterVin); });
    }
    state.CommOK = acknowledged;
    session.line.Close();
}

void VerifyVIN(Session& session) {
    bool complete = false;
    BeginVerify(session.state);
    session.steps.Procedure([&](Steps&) {
        ProgressAndCancel progress(session, LinkWork::Verifying);
        complete = VerifyRanges(session, kVinRanges, FailedOpen::Asks, progress);
        if (complete) DelayTimer(session, WireTimes::kAfterVin);
    });
    EndVerify(session.state, complete);
    session.line.Close();
}

void DelayTimer(Session& session, std::chrono::milliseconds duration) {
    session.steps([&] { session.line.WaitFor(duration); });
}

}  // namespace rv52
