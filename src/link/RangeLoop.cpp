#include "link/RangeLoop.h"

#include "app/Session.h"
#include "link/ModuleProtocol.h"

namespace rv52 {

bool RunRanges(Session& session, std::span<const TransferRange> ranges, const RangeLoop& loop) {
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

bool GoOnReading(Session& session) {
    Yield(session);
    return session.state.CommOK && !session.state.AbortRequested;
}

}  // namespace rv52
