#include "simulator/FaultKinds.h"

#include <algorithm>
#include <array>

namespace rv52 {

namespace {

using Random = FaultKind::Random;
using Completed = ModuleStep::Completed;

// The PC waits one second for a reply.
constexpr std::chrono::milliseconds kJustInTime{990};
constexpr std::chrono::milliseconds kTooLate{1010};
constexpr std::uint8_t kRefusal = 0x15;
constexpr std::uint64_t kMostGarbage = 3;  // bytes

template <Completed... commands>
int AtEnd(const ModuleStep& step) {
    return ((step.completed == commands) || ...) && step.HasReply() ? 1 : 0;
}
constexpr auto kAtEveryReply =
    AtEnd<Completed::Identification, Completed::Address, Completed::Read, Completed::Write>;

int AtEveryReceivedByte(const ModuleStep&) {
    return 1;
}
int AtEveryByte(const ModuleStep& step) {
    return 1 + static_cast<int>(step.bytes.size());
}

void KeepBytes(ModuleStep& step, std::size_t count) {
    step.bytes.resize(std::min(count, step.bytes.size()));
    step.echoes = std::min(step.echoes, step.bytes.size());
}

void SwitchOff(ModuleStep& step, int, Random&) {
    KeepBytes(step, 0);
    step.store.reset();
}

void DropEndOfText(ModuleStep& step, int, Random&) {
    step.bytes.pop_back();
}

template <int milliseconds>
void Delay(ModuleStep& step, int, Random&) {
    step.bytes[step.echoes].delay += std::chrono::milliseconds{milliseconds};
}

void LoseReply(ModuleStep& step, int, Random&) {
    KeepBytes(step, step.echoes);
}

void Refuse(ModuleStep& step, int, Random&) {
    step.bytes.back().byte = kRefusal;
    step.store.reset();
}

void ForgetToStore(ModuleStep& step, int, Random&) {
    step.store.reset();
}

void FlipBit(ModuleStep& step, int, Random& random) {
    auto& byte = step.bytes.back().byte;
    byte = static_cast<std::uint8_t>(byte ^ (1U << (random() % 8)));
}

void SendGarbage(ModuleStep& step, int, Random& random) {
    const auto count = 1 + random() % kMostGarbage;
    for (std::uint64_t i = 0; i < count; ++i)
        step.bytes.insert(step.bytes.begin(), {static_cast<std::uint8_t>(random() % 256), {}});
    step.echoes += count;
}

// Opportunity 0 is the received byte, 1 the first byte of the answer, and so on.
void HangUp(ModuleStep& step, int opportunity, Random&) {
    if (opportunity == 0) step.store.reset();
    KeepBytes(step, static_cast<std::size_t>(std::max(opportunity - 1, 0)));
    step.hangUp = true;
}

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
    FaultKind{"flipped-bit", "read K comes back with one bit flipped", false, AtEnd<Completed::Read>,
              FlipBit},
    FaultKind{"garbage-before-reply", "one to three stray bytes come before reply K and its echo", false,
              kAtEveryReply, SendGarbage},
    FaultKind{"hang-up", "the line is gone before byte K, counting both directions", false, AtEveryByte,
              HangUp},
};

}  // namespace

std::span<const FaultKind> FaultKinds() {
    return kKinds;
}

}  // namespace rv52
