#pragma once

#include "platform/Prompts.h"

#include <concepts>
#include <exception>
#include <string>
#include <utility>

namespace rv52 {

// The shared failure box: description, title "Error", critical icon; Abort, Retry, Ignore.
Answer ErrorPrompt(Prompts& prompts, const std::string& description);

// Runs the steps of a procedure. A step that throws asks with ErrorPrompt: Retry runs it again, so a step
// changes nothing before it can throw; Ignore goes on with the next one; Abort leaves the procedure
// through its exit step. Nested procedures leave one at a time: the caller goes on after an abandoned one.
class Steps {
 public:
    explicit Steps(Prompts& prompts) : prompts_(prompts) {}

    template <std::invocable ExitStep, std::invocable<Steps&> Body>
    void Procedure(ExitStep&& exitStep, Body&& body) {
        try {
            std::forward<Body>(body)(*this);
        } catch (const Abandoned&) {
            std::forward<ExitStep>(exitStep)();
        }
    }

    template <std::invocable<Steps&> Body>
    void Procedure(Body&& body) {
        Procedure([] {}, std::forward<Body>(body));
    }

    template <std::invocable Step>
    void operator()(Step&& step) {
        Value(
            [&] {
                step();
                return true;
            },
            false);
    }

    // The step's value, or ignored when the user goes on without it.
    template <std::invocable Step, class T>
    T Value(Step&& step, T ignored) {
        for (;;) {
            try {
                return step();
            } catch (const Abandoned&) {
                throw;
            } catch (const std::exception& failure) {
                if (!Again(failure.what())) return ignored;
            }
        }
    }

    // A box with OK alone.
    void Tell(const std::string& text, const std::string& title, Icon icon = Icon::Warning);

    // Leaves the procedure through its exit step.
    [[noreturn]] void Abandon() { throw Abandoned{}; }

 private:
    struct Abandoned {};

    // True for Retry, false for Ignore.
    bool Again(const char* description);

    Prompts& prompts_;
};

}  // namespace rv52
