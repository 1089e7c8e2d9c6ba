#include "link/ModuleLink.h"

#include "link/LinkTexts.h"
#include "link/WireProtocol.h"
#include "platform/Failure.h"

#include <algorithm>
#include <utility>

namespace rv52 {

// --- Identification and address: each move is a step of its own that asks when it fails. Only the first of
// them opens the port, so whoever ignores a failure finds every later move failing too.

Identification ModuleLink::Identify(int commPort) {
    Identification found;
    steps_.Procedure([&](Steps& step) {
        step([&] {
            if (!line_.IsOpen()) line_.Open(commPort);
        });
        step([&] { line_.Discard(); });
        disturbed_ = false;
        step([&] { line_.SendByte(WireBytes::kIdentify); });
        found.text.emplace();
        const auto outcome = CollectIdentification(found);
        if (outcome == LinkOutcome::Done) step([&] { line_.WaitFor(WireTimes::kAfterIdentification); });
        found.outcome = outcome;
    });
    line_.Close();
    // A damaged identification is none, whatever it looks like; the condition's own box has said so.
    if (disturbed_) found.outcome = LinkOutcome::Abandoned;
    if (found.outcome == LinkOutcome::TimedOut) TellUntilLeft(LinkTexts::kNoAnswer);
    if (found.outcome == LinkOutcome::Refused) TellUntilLeft(LinkTexts::kUnexpectedTerminator);
    return found;
}

// A module that echoes repeats the request before it answers, so the first byte of all tells which kind it
// is.
LinkOutcome ModuleLink::CollectIdentification(Identification& found) {
    const auto deadline = line_.Now() + WireTimes::kReply;
    for (bool first = true;; first = false) {
        const auto byte = NextCharacter(deadline);
        if (!byte) return LinkOutcome::TimedOut;
        if (byte == WireBytes::kEndOfText) return first ? LinkOutcome::Refused : LinkOutcome::Done;
        const bool printable = *byte >= 32 && *byte <= 127;
        if (first && (printable || byte == WireBytes::kIdentify)) found.echoes = !printable;
        if (printable) *found.text += static_cast<char>(*byte);
        steps_([&] { line_.Yield(); });
    }
}

// One deadline holds for the whole text. Nothing more is waited for once a line condition has been shown,
// and a port that was closed with it is not told of twice.
std::optional<std::uint8_t> ModuleLink::NextCharacter(Line::Clock deadline) {
    const auto await = [&] {
        try {
            return line_.WaitForBytes(1, deadline, Yielding::Yes);
        } catch (const PortFailure&) {
            if (disturbed_) return 0;
            throw;
        }
    };
    if (disturbed_ || steps_.Value(await, 0) == 0) return std::nullopt;
    if (disturbed_ || line_.Now() > deadline) return std::nullopt;
    return TakeReply(0);
}

LinkOutcome ModuleLink::SetAddress(const ModuleAt& module, EepromAddress address, FailedOpen failedOpen) {
    auto outcome = LinkOutcome::Abandoned;
    steps_.Procedure([&](Steps&) {
        outcome = OpenForAddress(module.commPort, failedOpen) ? SendAddress(module.echoes, address)
                                                              : LinkOutcome::LineLost;
    });
    line_.Close();
    if (outcome == LinkOutcome::TimedOut) TellUntilLeft(LinkTexts::kNoAnswer);
    if (outcome != LinkOutcome::Done) lastReply_ = line_.Now();
    return outcome;
}

bool ModuleLink::OpenForAddress(int commPort, FailedOpen failedOpen) {
    if (failedOpen == FailedOpen::Asks) {
        steps_([&] {
            if (!line_.IsOpen()) line_.Open(commPort);
        });
        return true;
    }
    try {
        if (!line_.IsOpen()) line_.Open(commPort);
        return true;
    } catch (const std::exception& failure) {
        TellLost(commPort, failure.what());
        return false;
    }
}

LinkOutcome ModuleLink::SendAddress(bool echoes, EepromAddress address) {
    const auto low = static_cast<std::uint8_t>(address.value & 0xFF);
    const auto high = static_cast<std::uint8_t>(address.value >> 8 & 0xFF);
    steps_([&] { line_.Discard(); });
    if (!SendAddressByte(echoes, WireBytes::kSetAddress)) return LinkOutcome::TimedOut;
    if (!SendAddressByte(echoes, low)) return LinkOutcome::TimedOut;
    const auto sent = line_.Now();
    steps_([&] { line_.SendByte(high); });
    if (!ReplyArrives(echoes ? 2 : 1)) return LinkOutcome::TimedOut;
    const bool acknowledged = TakeReply(echoes ? 1 : 0) == WireBytes::kAcknowledge && Answers(sent);
    steps_([&] { line_.Discard(); });
    steps_([&] { line_.WaitFor(WireTimes::kAfterAddress); });
    if (!acknowledged) return LinkOutcome::Refused;
    return line_.IsOpen() ? LinkOutcome::Done : LinkOutcome::Abandoned;
}

// What came before the byte that it would acknowledge is none: a module that still waited for the rest of a
// command cut short has taken these bytes for it, and acknowledges another address, or another byte.
bool ModuleLink::Answers(Line::Clock sent) const {
    return line_.LastArrival() >= sent;
}

// The echo is only waited for: the discard takes it away.
bool ModuleLink::SendAddressByte(bool echoes, std::uint8_t byte) {
    steps_([&] { line_.SendByte(byte); });
    if (echoes && !ReplyArrives(1)) return false;
    steps_([&] { line_.Discard(); });
    steps_([&] { line_.WaitFor(WireTimes::kAfterAddressByte); });
    return true;
}

bool ModuleLink::ReplyArrives(int count) {
    const auto deadline = line_.Now() + WireTimes::kReply;
    const auto await = [&] { return line_.WaitForBytes(count, deadline, Yielding::Yes); };
    const bool complete = steps_.Value(await, 0) >= count;
    lastReply_ = std::min(line_.LastArrival(), deadline);
    return complete;
}

// The byte after this many echoes, all of which are waiting; nothing when they could not be read.
std::optional<std::uint8_t> ModuleLink::TakeReply(int echoes) {
    std::optional<std::uint8_t> byte;
    for (int left = echoes; left >= 0; --left) {
        const auto read = [&] { return std::optional(line_.ReadByte()); };
        byte = steps_.Value(read, std::optional<std::uint8_t>());
        if (!byte) break;
    }
    return byte;
}

// --- Ranges: plain loops on one connection, which the first failure ends.

LinkOutcome ModuleLink::ReadRange(const ModuleAt& module, std::span<std::uint8_t> bytes,
                                  const ByteMoved& moved) {
    return Unbroken(module.commPort, LinkTexts::kNoAnswer, [&] {
        for (auto& byte : bytes) {
            const auto outcome = ReadEEPROM(module.echoes, byte);
            if (outcome != LinkOutcome::Done) return outcome;
            if (!moved()) return LinkOutcome::Cancelled;
        }
        return LinkOutcome::Done;
    });
}

LinkOutcome ModuleLink::WriteRange(const ModuleAt& module, std::span<const std::uint8_t> bytes,
                                   const char* noAnswer, const ByteMoved& moved) {
    return Unbroken(module.commPort, noAnswer, [&] {
        for (const auto byte : bytes) {
            const auto outcome = WriteEEPROM(module.echoes, byte);
            if (outcome != LinkOutcome::Done) return outcome;
            moved();
        }
        return LinkOutcome::Done;
    });
}

Verification ModuleLink::VerifyRange(const ModuleAt& module, std::span<const std::uint8_t> bytes,
                                     const ByteMoved& moved) {
    Verification verified;
    verified.outcome = Unbroken(module.commPort, LinkTexts::kNoAnswer, [&] {
        for (const auto expected : bytes) {
            std::uint8_t byte = 0;
            const auto outcome = ReadEEPROM(module.echoes, byte);
            if (outcome != LinkOutcome::Done) return outcome;
            if (byte != expected) ++verified.differences;
            if (!moved()) return LinkOutcome::Cancelled;
        }
        return LinkOutcome::Done;
    });
    return verified;
}

// Opens the port, moves the bytes and tells what has ended them early. A condition shown behind the last byte
// is most likely about that byte; a port lost behind it is of no more concern.
template <class MoveBytes>
LinkOutcome ModuleLink::Unbroken(int commPort, const char* noAnswer, MoveBytes&& moveBytes) {
    auto outcome = LinkOutcome::Abandoned;
    disturbed_ = false;
    try {
        line_.Open(commPort);
        outcome = std::forward<MoveBytes>(moveBytes)();
    } catch (const std::exception& failure) {
        return TellLost(commPort, failure.what());
    }
    if (outcome == LinkOutcome::Done && disturbed_) outcome = LinkOutcome::Abandoned;
    if (outcome != LinkOutcome::Done) line_.Close();
    if (outcome == LinkOutcome::TimedOut) TellUntilLeft(noAnswer);
    return outcome;
}

// The wait lets nothing in, so what has gone wrong on the line meanwhile is shown only when it was in vain.
LinkOutcome ModuleLink::ReadEEPROM(bool echoes, std::uint8_t& byte) {
    line_.Discard();
    if (!SendUnbroken(WireBytes::kRead)) return LinkOutcome::Abandoned;
    const int replyLength = echoes ? 2 : 1;
    const auto deadline = line_.Now() + WireTimes::kReply;
    if (line_.WaitForBytes(replyLength, deadline, Yielding::No) < replyLength) {
        line_.Yield();
        line_.Discard();  // fails where a third condition has closed the port
        return disturbed_ ? LinkOutcome::Abandoned : LinkOutcome::TimedOut;
    }
    byte = LastOf(replyLength, deadline);
    line_.WaitFor(WireTimes::kAfterRead);
    return LinkOutcome::Done;
}

LinkOutcome ModuleLink::WriteEEPROM(bool echoes, std::uint8_t byte) {
    line_.Discard();
    if (!SendUnbroken(WireBytes::kWrite)) return LinkOutcome::Abandoned;
    line_.WaitFor(WireTimes::kBeforeWrittenByte);
    const auto sent = line_.Now();
    if (!SendUnbroken(byte)) return LinkOutcome::Abandoned;
    const int replyLength = echoes ? 3 : 1;  // the command and the byte are echoed
    const auto deadline = line_.Now() + WireTimes::kReply;
    if (line_.WaitForBytes(replyLength, deadline, Yielding::Yes) < replyLength)
        return disturbed_ ? LinkOutcome::Abandoned : LinkOutcome::TimedOut;
    const auto reply = LastOf(replyLength, deadline);
    if (reply != WireBytes::kAcknowledge || !Answers(sent)) return LinkOutcome::Refused;
    line_.WaitFor(WireTimes::kAfterWrite);
    return LinkOutcome::Done;
}

// False, and nothing sent, when the module may meanwhile have been restarted, or heard or told wrong.
bool ModuleLink::SendUnbroken(std::uint8_t byte) {
    const bool unsafe = disturbed_ || line_.Now() - lastReply_ > WireTimes::kLongestSilence;
    if (unsafe && line_.IsOpen()) return false;
    line_.SendByte(byte);  // a closed port says why it is closed
    return true;
}

std::uint8_t ModuleLink::LastOf(int count, Line::Clock deadline) {
    lastReply_ = std::min(line_.LastArrival(), deadline);
    for (; count > 1; --count)
        line_.ReadByte();
    return line_.ReadByte();
}

// --- Failures that no step can repeat.

// Retry asks again and sends nothing.
void ModuleLink::TellUntilLeft(const char* failure) {
    while (ErrorPrompt(prompts_, failure) == Answer::Retry) {
    }
}

// Retry tries the port, so that the user sees when it is there again; what was interrupted is not gone on
// with.
LinkOutcome ModuleLink::TellLost(int commPort, std::string reason) {
    line_.Close();
    while (ErrorPrompt(prompts_, reason) == Answer::Retry) {
        try {
            line_.Open(commPort);
            break;
        } catch (const std::exception& failure) {
            reason = failure.what();
        }
    }
    line_.Close();
    return LinkOutcome::LineLost;
}

}  // namespace rv52
