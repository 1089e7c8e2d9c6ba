#include "link/LineErrors.h"

#include "app/Session.h"

namespace rv52 {

namespace {

constexpr int kToleratedLineErrors = 2;

// The notification raises the condition as a link error and catches it itself, so a Retry or Cancel here
// never ends the exchange that it interrupts.
void MSComm1_OnComm(Session& session, LineCondition condition) {
    if (++session.state.LineErrorCount > kToleratedLineErrors) session.line.Close();
    const auto answer = session.prompts.Ask(
        {std::string(Describe(condition)), "Communications Error", Icon::Critical, Buttons::RetryCancel});
    if (answer == Answer::Retry && session.line.IsOpen()) session.line.Discard();
}

}  // namespace

std::string_view Describe(LineCondition condition) {
    switch (condition) {
        case LineCondition::Framing:
            return "Framing error.";
        case LineCondition::HardwareOverrun:
            return "Port hardware overrun.";
        case LineCondition::ReceiveOverflow:
            return "Receive buffer overflow.";
        case LineCondition::Parity:
            return "Parity error.";
        case LineCondition::TransmitFull:
            return "Transmit buffer full.";
        case LineCondition::ControlBlock:
            break;
    }
    return "Device control block error.";
}

void HandleLineErrors(Session& session) {
    session.line.OnCondition([&session](LineCondition condition) { MSComm1_OnComm(session, condition); });
}

}  // namespace rv52
