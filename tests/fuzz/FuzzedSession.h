#pragma once

#include "app/state/Session.h"
#include "support/DismissingUser.h"
#include "support/IdleLine.h"
#include "support/TestSession.h"

namespace rv52::fuzz {

// A program without a module, whose user dismisses every box.
struct FuzzedSession {
    test::IdleLine line;
    test::TestSession parts{line};
    test::DismissingUser user;
    Session session{Ports{line, user, parts.view, parts.shell, parts.files, parts.settings, parts.printer}};
};

}  // namespace rv52::fuzz
