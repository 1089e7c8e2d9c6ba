#include "simulator/FaultKinds.h"

#include "link/WireProtocol.h"
#include "simulator/ModuleEeprom.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string>

namespace rv52 {

namespace {

using Cause = ModuleStep::Cause;
using Strike = FaultKind::Strike;
using Completed = ModuleStep::Completed;

// The PC waits one second for a reply.
constexpr std::chrono::milliseconds kJustInTime{990};
constexpr std::chrono::milliseconds kTooLate{1010};
constexpr std::uint8_t kRefusal = 0x15;
constexpr std::uint64_t kMostGarbage = 3;  // bytes
// An ignition switched off and on again by hand.
constexpr std::chrono::milliseconds kAway{200};

template <Completed... commands>
int AtEnd(const ModuleStep& step) {
    return ((step.completed == commands) || ...) && step.HasReply() ? 1 : 0;
}
constexpr auto kAtEveryReply =
    AtEnd<Completed::Identification, Completed::Address, Completed::Read, Completed::Write>;

int AtAcknowledge(const ModuleStep& step) {
    const bool due = AtEnd<Completed::Address, Completed::Write>(step) == 1;
    return due && step.bytes.back().byte == WireBytes::kAcknowledge ? 1 : 0;
}
int AtEcho(const ModuleStep& step) {
    return step.HasEcho() ? 1 : 0;
}
int AtDataOfWrite(const ModuleStep& step) {
    return step.cause == Cause::Byte && step.before.expecting == ModuleState::Expecting::Data ? 1 : 0;
}
int AtEveryReceivedByte(const ModuleStep& step) {
    return step.cause == Cause::Byte ? 1 : 0;
}
int AtEveryByte(const ModuleStep& step) {
    return step.cause == Cause::Byte ? 1 + static_cast<int>(step.bytes.size()) : 0;
}
int AtEveryClosing(const ModuleStep& step) {
    return step.cause == Cause::PortClosed ? 1 : 0;
}

void KeepBytes(ModuleStep& step, std::size_t count) {
    step.bytes.resize(std::min(count, step.bytes.size()));
    step.echoes = std::min(step.echoes, step.bytes.size());
    step.strays = std::min(step.strays, step.bytes.size());
}

void FlipBit(std::uint8_t& byte, const Strike& strike) {
    const auto bit = strike.details.bit ? static_cast<unsigned>(*strike.details.bit) : strike.random() % 8;
    byte = static_cast<std::uint8_t>(byte ^ (1U << bit));
}

void SwitchOff(ModuleStep& step, Strike) {
    KeepBytes(step, 0);
    step.store.reset();
}

void DropEndOfText(ModuleStep& step, Strike) {
    step.bytes.pop_back();
}

template <int milliseconds>
void Delay(ModuleStep& step, Strike) {
    step.bytes[step.echoes].delay += std::chrono::milliseconds{milliseconds};
}

void LoseReply(ModuleStep& step, Strike) {
    KeepBytes(step, step.echoes);
}

void Refuse(ModuleStep& step, Strike) {
    step.bytes.back().byte = kRefusal;
    step.store.reset();
}

void ForgetToStore(ModuleStep& step, Strike) {
    step.store.reset();
}

void FlipLast(ModuleStep& step, Strike strike) {
    FlipBit(step.bytes.back().byte, strike);
}

void FlipEcho(ModuleStep& step, Strike strike) {
    FlipBit(step.bytes[step.echoes - 1].byte, strike);
}

void FlipCharacter(ModuleStep& step, Strike strike) {
    const bool ended = step.bytes.back().byte == WireBytes::kEndOfText;
    const auto count = step.bytes.size() - step.echoes - (ended ? 1 : 0);
    if (count == 0) return;
    const auto asked = strike.details.character;
    const auto index =
        asked ? std::min(static_cast<std::size_t>(*asked), count) - 1 : strike.random() % count;
    FlipBit(step.bytes[step.echoes + index].byte, strike);
}

// The byte itself has come, and what it did to the EEPROM is done.
void CyclePower(ModuleStep& step, Strike strike) {
    KeepBytes(step, 0);
    step.powerLost = true;
    step.away = strike.details.duration.value_or(kAway);
    step.after = {.address = strike.details.address.value_or(0)};
}

void LetAnotherTalk(ModuleStep& step, Strike strike) {
    const auto anywhere = static_cast<int>(strike.random() % ModuleEeprom::kSize);
    step.after = {.address = strike.details.address.value_or(anywhere)};
}

void LoseByte(ModuleStep& step, Strike) {
    KeepBytes(step, 0);
    step.store.reset();
    step.after = step.before;
}

void SendGarbage(ModuleStep& step, Strike strike) {
    const auto count = 1 + strike.random() % kMostGarbage;
    for (std::uint64_t i = 0; i < count; ++i)
        step.bytes.insert(step.bytes.begin(), {static_cast<std::uint8_t>(strike.random() % 256), {}});
    step.echoes += count;
    step.strays += count;
}

// Opportunity 0 is the received byte, 1 the first byte of the answer, and so on.
void HangUp(ModuleStep& step, Strike strike) {
    const int opportunity = strike.opportunity;
    if (opportunity == 0) step.store.reset();
    KeepBytes(step, static_cast<std::size_t>(std::max(opportunity - 1, 0)));
    step.hangUp = true;
}

constexpr FaultDetail kTakesBit[] = {FaultDetail::Bit};
constexpr FaultDetail kTakesCharacterAndBit[] = {FaultDetail::Character, FaultDetail::Bit};
constexpr FaultDetail kTakesAddress[] = {FaultDetail::Address};
constexpr FaultDetail kTakesDurationAndAddress[] = {FaultDetail::Duration, FaultDetail::Address};

constexpr std::array kKinds{
    FaultKind{"silent", "from received byte K on, the module is as if switched off", true,
              AtEveryReceivedByte, SwitchOff},
    FaultKind{"no-terminator", "identification K ends without its carriage return", false,
              AtEnd<Completed::Identification>, DropEndOfText},
    FaultKind{"slow-reply", "reply K comes 0.99 s late, its echo at once", false, kAtEveryReply,
              Delay<kJustInTime.count()>},
    FaultKind{"late-reply", "reply K comes 1.01 s late, its echo at once", false, kAtEveryReply,
              Delay<kTooLate.count()>},
    FaultKind{"lost-reply", "reply K never comes, its echo does", false, kAtEveryReply, LoseReply},
    FaultKind{"refused-address", "set address K is answered by 15 instead of 06", false,
              AtEnd<Completed::Address>, Refuse},
    FaultKind{"refused-write", "write K is answered by 15 instead of 06 and not stored", false,
              AtEnd<Completed::Write>, Refuse},
    FaultKind{"not-stored", "write K is acknowledged but not stored", false, AtEnd<Completed::Write>,
              ForgetToStore},
    FaultKind{"flipped-bit", "read K comes back with bit=random flipped", false, AtEnd<Completed::Read>,
              FlipLast, kTakesBit},
    FaultKind{"garbage-before-reply", "one to three stray bytes come before reply K and its echo", false,
              kAtEveryReply, SendGarbage},
    FaultKind{"hang-up", "the line is gone before byte K, counting both directions", false, AtEveryByte,
              HangUp},
    FaultKind{"power-cycle", "after received byte K the module has no power for=200 ms, and then stands at=0",
              false, AtEveryReceivedByte, CyclePower, kTakesDurationAndAddress},
    FaultKind{"second-talker", "after closing K of the port somebody else leaves the module at=random", false,
              AtEveryClosing, LetAnotherTalk, kTakesAddress},
    FaultKind{"flipped-identification", "identification K comes with bit=random of character=random flipped",
              false, AtEnd<Completed::Identification>, FlipCharacter, kTakesCharacterAndBit},
    FaultKind{"flipped-echo", "echo K comes back with bit=random flipped", false, AtEcho, FlipEcho,
              kTakesBit},
    FaultKind{"flipped-acknowledge", "acknowledge K comes with bit=random flipped", false, AtAcknowledge,
              FlipLast, kTakesBit},
    FaultKind{"lost-data", "data byte K, after 16, is lost: the module takes the next byte for it", false,
              AtDataOfWrite, LoseByte},
};

}  // namespace

std::span<const FaultKind> FaultKinds() {
    return kKinds;
}

const FaultKind& FaultNamed(std::string_view name) {
    std::string known;
    for (const auto& kind : FaultKinds()) {
        if (kind.name == name) return kind;
        if (!known.empty()) known += ", ";
        known += kind.name;
    }
    throw std::invalid_argument("unknown fault \"" + std::string(name) + "\"; there are " + known);
}

}  // namespace rv52
