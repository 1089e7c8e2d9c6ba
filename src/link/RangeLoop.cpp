#include "link/RangeLoop.h"

#include "app/Session.h"
#include "link/ModuleProtocol.h"

#include <utility>

namespace rv52 {

namespace {

std::uint8_t& ByteAt(Session& session, int index) {
    return session.state.EepromBuffer.at(static_cast<std::size_t>(index));
}

// After a byte read from the module: the window lives, and Escape or a failed read ends the transfer.
bool GoOnReading(Session& session) {
    Yield(session);
    return session.state.CommOK && !session.state.AbortRequested;
}

// The state and the status line say what is done from the first address of a transfer to its last byte.
class ToldWork {
 public:
    ToldWork(Session& session, LinkWork work) : session_(session) { Tell(work); }
    ~ToldWork() { Tell(LinkWork::None); }
    ToldWork(const ToldWork&) = delete;
    ToldWork& operator=(const ToldWork&) = delete;

 private:
    void Tell(LinkWork work) {
        session_.state.LinkWork = work;
        session_.shell.RenewStatus();
    }

    Session& session_;
};

}  // namespace

bool RunRanges(Session& session, std::span<const TransferRange> ranges, const RangeLoop& loop) {
    const ToldWork told(session, loop.work);
    for (const auto& range : ranges) {
        SetEEPROMAddress(session, range.address);
        if (!loop.addressed()) return false;
        for (int index = range.first; index <= range.last; ++index) {
            if (!loop.move(index)) return false;
            loop.count();
            if (!loop.settle()) return false;
        }
    }
    return true;
}

RangeLoop ReadLoop(Session& session) {
    RangeLoop loop;
    loop.work = LinkWork::Reading;
    loop.addressed = [&] { return std::exchange(session.state.CommOK, false); };
    loop.move = [&](int index) {
        ByteAt(session, index) = ReadEEPROM(session).value_or(0);
        return true;
    };
    loop.settle = [&] { return GoOnReading(session); };
    return loop;
}

RangeLoop WriteLoop(Session& session, int echoes, const char* timeoutText) {
    RangeLoop loop;
    loop.work = LinkWork::Programming;
    // An address that was acknowledged says nothing about the bytes that follow it.
    loop.addressed = [&] {
        if (!std::exchange(session.state.CommOK, false)) return false;
        OpenLine(session);
        return true;
    };
    loop.move = [&session, echoes, timeoutText](int index) {
        return WriteEEPROM(session, ByteAt(session, index), echoes, timeoutText);
    };
    loop.settle = [] { return true; };
    return loop;
}

Verification::Verification(Session& session) : session_(session) {
    session_.state.AbortRequested = false;
    session_.state.VerifyErrors = 0;
}

RangeLoop Verification::Loop() {
    RangeLoop loop;
    loop.work = LinkWork::Verifying;
    loop.addressed = [this] {
        addressed_ = addressed_ && session_.state.CommOK;
        return true;
    };
    loop.move = [this](int index) {
        if (ReadEEPROM(session_) != ByteAt(session_, index)) ++session_.state.VerifyErrors;
        return true;
    };
    loop.settle = [this] { return GoOnReading(session_); };
    return loop;
}

void Verification::Judge(bool complete) {
    if (!complete || !addressed_) ++session_.state.VerifyErrors;
    if (!complete) session_.state.AbortRequested = false;
}

}  // namespace rv52
