#include "link/Vin.h"

#include "app/Session.h"
#include "link/ModuleProtocol.h"
#include "link/RangeLoop.h"
#include "platform/CodePage.h"

#include <algorithm>

namespace rv52 {

namespace {

using namespace std::chrono_literals;

constexpr auto kRest = 100ms;  // after the last byte of each procedure
constexpr const auto& kVin = kVinRanges.front();
constexpr const char* kTimeout = "RS-232 timeout during Write VIN routine. Check cable and click Abort.";

std::span<std::uint8_t> BytesOf(EepromBuffer& buffer) {
    return std::span(buffer).subspan(kVin.first, kVin.Count());
}

// Runs the loop and then the rest. False when either was abandoned, or the loop ended early.
bool Run(Session& session, const RangeLoop& loop, const std::function<void()>& rest) {
    bool complete = false;
    session.steps.Procedure([&](Steps&) {
        if (!RunRanges(session, kVinRanges, loop)) return;
        rest();
        DelayTimer(session, kRest);
        complete = true;
    });
    return complete;
}

}  // namespace

std::optional<std::string> VinCodes(std::string_view vin) {
    auto codes = ToCodePage(vin);
    return codes && codes->size() == std::size_t{kVin.Count()} ? codes : std::nullopt;
}

void ReadVINData(Session& session) {
    auto& state = session.state;
    state.AbortRequested = false;
    const bool complete = Run(session, ReadLoop(session), [&] {
        const auto bytes = BytesOf(state.EepromBuffer);
        state.Vin = FromCodePage(std::string(bytes.begin(), bytes.end()));
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
    std::ranges::transform(*codes, BytesOf(state.EepromBuffer).begin(),
                           [](char code) { return static_cast<std::uint8_t>(code); });
    // Modules that take a VIN echo, so both echoes are waited for whatever the identification told.
    const bool complete =
        Run(session, WriteLoop(session, kWriteEchoes, kTimeout), [&] { VerifyVIN(session); });
    state.CommOK = complete;
    session.line.Close();
}

void VerifyVIN(Session& session) {
    Verification verification(session);
    verification.Judge(Run(session, verification.Loop(), [] {}));
    session.line.Close();
}

}  // namespace rv52
