#pragma once

#include "platform/Line.h"

namespace rv52 {

// What the boxes say of the line and of an exchange with the module, the same whichever command it belongs
// to. The commands' own verdicts stand in ModuleMessages.cpp and in the commands.
struct LinkTexts {
    static constexpr const char* kNoAnswer = "RS-232 timeout. Check cable and click Abort.";
    static constexpr const char* kNoAnswerToVin =
        "RS-232 timeout during Write VIN routine. Check cable and click Abort.";
    static constexpr const char* kUnexpectedTerminator = "Firmware ID - unexpected terminator.";

    static constexpr const char* Of(LineCondition condition) {
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
};

}  // namespace rv52
