#include "link/WireSteps.h"

#include "app/Session.h"
#include "platform/Failure.h"

namespace rv52 {

void OpenLine(Session& session) {
    session.steps([&] {
        if (!session.line.IsOpen()) session.line.Open(session.state.CommPort);
    });
}

void DiscardInput(Session& session) {
    session.steps([&] { session.line.Discard(); });
}

void Send(Session& session, std::uint8_t byte) {
    session.steps([&] { session.line.SendByte(byte); });
}

void Yield(Session& session) {
    session.steps([&] { session.line.Pump(); });
}

void DelayTimer(Session& session, std::chrono::milliseconds duration) {
    session.steps([&] { session.line.Pause(duration); });
}

bool AwaitReply(Session& session, int count, Yielding yielding, const char* timeoutText) {
    const auto deadline = session.line.Now() + kReplyTime;
    const int waiting = session.steps.Value([&] { return session.line.Await(count, deadline, yielding); }, 0);
    if (waiting >= count) return true;
    RaiseLinkError(session, timeoutText);
    return false;
}

std::optional<std::uint8_t> TakeReply(Session& session, int echoes) {
    std::optional<std::uint8_t> byte;
    for (int left = echoes; left >= 0; --left) {
        byte = session.steps.Value([&] { return std::optional(session.line.ReadByte()); },
                                   std::optional<std::uint8_t>());
        if (!byte) break;
    }
    return byte;
}

void RaiseLinkError(Session& session, const char* description) {
    session.line.Close();
    session.steps([&] { throw LinkError(description); });
}

}  // namespace rv52
