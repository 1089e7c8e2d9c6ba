#include "link/ModuleProtocol.h"

#include "app/Session.h"
#include "link/WireBytes.h"

#include <utility>

namespace rv52 {

namespace {

using namespace std::chrono_literals;

constexpr auto kIdentified = 5ms;
constexpr auto kAddressPause = 5ms;  // the module's time to take each byte of an address
constexpr auto kReadPause = 2ms;
constexpr auto kWritePause = 2ms;

enum class Identification { Complete, TimedOut, UnexpectedTerminator };

// Aborting an exchange leaves it through here.
template <class Body>
void Exchange(Session& session, Body&& body) {
    const auto exitStep = [&] {
        session.line.Close();
        session.state.CommOK = false;
    };
    session.state.CommOK = false;
    session.steps.Procedure(exitStep, [&](Steps&) { std::forward<Body>(body)(); });
}

int EchoesOf(const Session& session, int sent) {
    return session.state.EchoMode ? sent : 0;
}

// The next byte of a reply that has one deadline for all of its bytes.
std::optional<std::uint8_t> NextByte(Session& session, Line::Clock deadline) {
    const int waiting =
        session.steps.Value([&] { return session.line.Await(1, deadline, Yielding::Yes); }, 0);
    if (waiting == 0 || session.line.Now() > deadline) return std::nullopt;
    return TakeReply(session, 0);
}

// A module that echoes repeats the request before it answers, so the first byte of all tells which kind it
// is.
void TakeCharacter(AppState& state, std::uint8_t byte, bool first) {
    const bool printable = byte >= 32 && byte <= 127;
    if (first && byte == WireBytes::kIdentify) state.EchoMode = true;
    if (first && printable) state.EchoMode = false;
    if (printable) state.FirmwareId += static_cast<char>(byte);
}

Identification CollectIdentification(Session& session, Line::Clock deadline) {
    for (bool first = true;; first = false) {
        const auto byte = NextByte(session, deadline);
        if (!byte) return Identification::TimedOut;
        if (byte == WireBytes::kEndOfText)
            return first ? Identification::UnexpectedTerminator : Identification::Complete;
        TakeCharacter(session.state, *byte, first);
        Yield(session);
    }
}

void AcceptIdentification(Session& session) {
    DelayTimer(session, kIdentified);
    auto& state = session.state;
    state.TableType = TypeNamedIn(state.FirmwareId);
    state.CommOK = !state.FirmwareId.empty();
    session.line.Close();
}

// One byte of an address command. The echo is only waited for: the discard takes it away.
bool SendAddressByte(Session& session, std::uint8_t byte) {
    Send(session, byte);
    if (session.state.EchoMode && !AwaitReply(session, 1)) return false;
    DiscardInput(session);
    DelayTimer(session, kAddressPause);
    return true;
}

}  // namespace

void ReadFirmwareID(Session& session) {
    Exchange(session, [&] {
        OpenLine(session);
        DiscardInput(session);
        Send(session, WireBytes::kIdentify);
        const auto deadline = session.line.Now() + kReplyTime;
        session.state.FirmwareId.clear();
        switch (CollectIdentification(session, deadline)) {
            case Identification::Complete:
                return AcceptIdentification(session);
            case Identification::TimedOut:
                return RaiseLinkError(session, kReplyTimeout);
            case Identification::UnexpectedTerminator:
                return RaiseLinkError(session, "Firmware ID - unexpected terminator.");
        }
    });
}

void SetEEPROMAddress(Session& session, EepromAddress address) {
    const auto low = static_cast<std::uint8_t>(address.value & 0xFF);
    const auto high = static_cast<std::uint8_t>(address.value >> 8 & 0xFF);
    Exchange(session, [&] {
        OpenLine(session);
        DiscardInput(session);
        if (!SendAddressByte(session, WireBytes::kSetAddress) || !SendAddressByte(session, low)) return;
        Send(session, high);
        const int echoes = EchoesOf(session, 1);
        if (!AwaitReply(session, echoes + 1)) return;
        session.state.CommOK = TakeReply(session, echoes) == WireBytes::kAcknowledge;
        DiscardInput(session);
        DelayTimer(session, kAddressPause);
        session.line.Close();
    });
}

std::optional<std::uint8_t> ReadEEPROM(Session& session) {
    std::optional<std::uint8_t> byte;
    Exchange(session, [&] {
        OpenLine(session);
        DiscardInput(session);
        Send(session, WireBytes::kRead);
        const int echoes = EchoesOf(session, 1);
        if (!AwaitReply(session, echoes + 1, Yielding::No)) return;
        byte = TakeReply(session, echoes);
        DelayTimer(session, kReadPause);
        session.state.CommOK = byte.has_value();
    });
    return session.state.CommOK ? byte : std::nullopt;
}

bool WriteEEPROM(Session& session, std::uint8_t byte, int echoes, const char* timeoutText) {
    DiscardInput(session);
    Send(session, WireBytes::kWrite);
    DelayTimer(session, kWritePause);
    Send(session, byte);
    if (!AwaitReply(session, echoes + 1, Yielding::Yes, timeoutText)) return false;
    if (TakeReply(session, echoes) != WireBytes::kAcknowledge) return false;
    DelayTimer(session, kWritePause);
    return true;
}

}  // namespace rv52
