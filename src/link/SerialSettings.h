#pragma once

namespace rv52 {

// The fixed line settings "56000,N,8,1", no flow control, DTR asserted, RTS not.
struct SerialSettings {
    static constexpr int kBitsPerSecond = 56000;  // not 57600
    static constexpr int kBitsPerByte = 10;       // start bit, 8 data bits, 1 stop bit; no parity
    static constexpr bool kDataTerminalReady = true;
    static constexpr bool kRequestToSend = false;
    static constexpr int kReceiveBuffer = 256;  // bytes
};

}  // namespace rv52
