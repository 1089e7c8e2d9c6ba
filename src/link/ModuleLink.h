#pragma once

#include "module/EepromMap.h"
#include "platform/Line.h"
#include "platform/Steps.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>

namespace rv52 {

// Every way in which an exchange with the module can end.
enum class LinkOutcome {
    Done,
    Refused,    // the module answered, but not as it does when all is well
    TimedOut,   // it did not answer in time; the failure box has said so
    LineLost,   // the port could not be opened, or was closed or lost under way; the failure box has said so
    Cancelled,  // the caller wanted no more bytes
    Abandoned,  // left by a box's Abort, or no longer safe to go on with: see ModuleLink
};

// Where the module is, and whether it sends back each byte that it receives.
struct ModuleAt {
    int commPort = 1;
    bool echoes = false;
};

// Who answered a request for identification. What had come by the end of it is told whatever the outcome.
struct Identification {
    LinkOutcome outcome = LinkOutcome::Abandoned;
    std::optional<std::string> text;  // its printable characters; nothing when no request was sent
    std::optional<bool> echoes;       // as the first byte told, if it did
};

struct Verification {
    LinkOutcome outcome = LinkOutcome::Abandoned;
    int differences = 0;  // among the bytes that were read back
};

// The module at the other end of the line. The protocol's bytes and times are in WireProtocol.h.
//
// The module keeps an address that moves on with every byte read or written, and forgets it when its ignition
// is switched off. So whoever sets an address keeps one connection until the last byte: a range opens the
// port once, and ends at the first sign that the module may have been restarted or was not heard right: no
// answer, a failed call, a port found closed, a line condition, or a silence of more than kLongestSilence, as
// while a box stands or the machine sleeps. After any of these no byte of that range is sent.
class ModuleLink {
 public:
    // After each byte of a range, counted from 0 for its first: shows it, serves the window, and tells
    // whether to go on. Programming goes on whatever it tells.
    using ByteMoved = std::function<bool()>;

    // What comes of a port that cannot be opened for an address. Asks: Retry may go on once it opens, as
    // after any failed step. Ends: what is plugged in by then may be another module than the identified one.
    enum class FailedOpen { Asks, Ends };

    ModuleLink(Line& line, Prompts& prompts) : line_(line), prompts_(prompts), steps_(prompts) {}

    // Closes the port.
    Identification Identify(int commPort);

    // Points the module at an address and closes the port. Done: it has acknowledged, and the port was never
    // closed or lost meanwhile.
    LinkOutcome SetAddress(const ModuleAt& module, EepromAddress address,
                           FailedOpen failedOpen = FailedOpen::Asks);

    // The bytes at the address that was just set. All leave the port open when Done, and closed when not.
    LinkOutcome ReadRange(const ModuleAt& module, std::span<std::uint8_t> bytes, const ByteMoved& moved);
    LinkOutcome WriteRange(const ModuleAt& module, std::span<const std::uint8_t> bytes, const char* noAnswer,
                           const ByteMoved& moved);
    Verification VerifyRange(const ModuleAt& module, std::span<const std::uint8_t> bytes,
                             const ByteMoved& moved);

    // A line condition has been shown: what has been received may be damaged.
    void Disturb() { disturbed_ = true; }

 private:
    LinkOutcome CollectIdentification(Identification& found);
    std::optional<std::uint8_t> NextCharacter(Line::Clock deadline);

    bool OpenForAddress(int commPort, FailedOpen failedOpen);
    LinkOutcome SendAddress(bool echoes, EepromAddress address);
    bool SendAddressByte(bool echoes, std::uint8_t byte);
    bool ReplyArrives(int count);
    std::optional<std::uint8_t> TakeReply(int echoes);
    bool Answers(Line::Clock sent) const;

    template <class MoveBytes>
    LinkOutcome Unbroken(int commPort, const char* noAnswer, MoveBytes&& moveBytes);
    LinkOutcome ReadEEPROM(bool echoes, std::uint8_t& byte);
    LinkOutcome WriteEEPROM(bool echoes, std::uint8_t byte);
    bool SendUnbroken(std::uint8_t byte);
    std::uint8_t LastOf(int count, Line::Clock deadline);

    void TellUntilLeft(const char* failure);
    LinkOutcome TellLost(int commPort, std::string reason);

    Line& line_;
    Prompts& prompts_;
    Steps steps_;
    bool disturbed_ = false;    // a line condition was shown since the request, or since the range began
    Line::Clock lastReply_{0};  // the last time at which the module is known to have stood where it was left
};

}  // namespace rv52
