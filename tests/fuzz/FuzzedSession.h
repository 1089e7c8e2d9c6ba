#pragma once

#include "app/state/Session.h"
#include "support/DismissingUser.h"
#include "support/IdleLine.h"
#include "support/TestSession.h"

namespace rv52::fuzz {

// Dismisses every box, and types the same into each that asks for a text.
struct Typist : test::DismissingUser {
    std::string AskText(const InputBox&) override { return text; }

    std::string text;
};

// A program without a module.
struct FuzzedSession {
    test::IdleLine line;
    test::TestSession parts{line};
    Typist user;
    Session session{Ports{line, user, parts.view, parts.shell, parts.files, parts.settings, parts.printer}};
};

}  // namespace rv52::fuzz
