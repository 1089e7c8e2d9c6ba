#pragma once

#include "platform/Line.h"

#include <chrono>
#include <cstdint>
#include <optional>

namespace rv52 {

struct Session;

// The module's time for a whole reply.
constexpr std::chrono::seconds kReplyTime{1};
inline constexpr const char* kReplyTimeout = "RS-232 timeout. Check cable and click Abort.";

// The single moves of an exchange, each a step of its own that asks when it fails. A port failure leaves the
// line closed and nothing but OpenLine opens it, so whoever goes on after one finds every later send of the
// exchange refused too: no byte can reach the module out of its place.
void OpenLine(Session& session);
void DiscardInput(Session& session);
void Send(Session& session, std::uint8_t byte);
void Yield(Session& session);
void DelayTimer(Session& session, std::chrono::milliseconds duration);

// Waits for this many bytes, at most kReplyTime. When they do not come, raises a link error with the text and
// returns false.
bool AwaitReply(Session& session, int count, Yielding yielding = Yielding::Yes,
                const char* timeoutText = kReplyTimeout);

// The byte after this many echoes, all of which are waiting; nothing when they could not be read.
std::optional<std::uint8_t> TakeReply(Session& session, int echoes);

// Closes the line and asks. Retry asks again and sends nothing; Ignore returns.
void RaiseLinkError(Session& session, const char* description);

}  // namespace rv52
