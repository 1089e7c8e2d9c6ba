#pragma once

#include <chrono>
#include <cstdint>
#include <functional>

namespace rv52 {

// The fixed line settings "56000,N,8,1", no flow control, DTR asserted, RTS not.
struct SerialSettings {
    static constexpr int kBitsPerSecond = 56000;  // not 57600
    static constexpr int kBitsPerByte = 10;       // start bit, 8 data bits, 1 stop bit; no parity
    static constexpr bool kDataTerminalReady = true;
    static constexpr bool kRequestToSend = false;
    static constexpr int kReceiveBuffer = 256;  // bytes
};

// The six line conditions that are errors.
enum class LineCondition { Framing, HardwareOverrun, ReceiveOverflow, Parity, TransmitFull, ControlBlock };

enum class Yielding { Yes, No };

// The serial line to the ignition module and the time it is measured in, one port: every time-out,
// delay and abort is a matter of both. Bytes are 0 to 255; times are of a clock that only moves forward, and
// that goes on while the machine sleeps.
//
// A call that cannot be carried out (the port is missing, held by another program, closed, or went
// away) throws PortFailure and leaves the line closed.
class Line {
 public:
    using Clock = std::chrono::nanoseconds;  // since an arbitrary moment
    using ConditionHandler = std::function<void(LineCondition)>;

    virtual ~Line() = default;

    virtual bool IsOpen() const = 0;
    // Opens ComN with the fixed SerialSettings. Only while closed. From the first open on, nobody
    // else who talks to modules gets the device, closed or not, until EndHold.
    virtual void Open(int commPort) = 0;
    // Safe at any time.
    virtual void Close() noexcept = 0;
    // The command that opened the line has ended. Safe at any time.
    virtual void EndHold() noexcept = 0;

    // Throws away every received byte that waits.
    virtual void Discard() = 0;
    // Takes the next waiting byte. Only while one is waiting.
    virtual std::uint8_t ReadByte() = 0;
    virtual void SendByte(std::uint8_t byte) = 0;

    virtual Clock Now() const = 0;
    // When the last byte that has been received arrived, as exactly as the line knows; not while it waits
    // without yielding to anyone.
    virtual Clock LastArrival() const = 0;
    // Serves the window events that are pending.
    virtual void Yield() = 0;
    // Waits until count bytes are waiting or the clock has passed the deadline; returns how many are
    // waiting then. Yielding serves window events meanwhile.
    virtual int WaitForBytes(int count, Clock deadline, Yielding yielding) = 0;
    // Returns after at least this long, having served window events.
    virtual void WaitFor(std::chrono::milliseconds duration) = 0;

    // Line conditions are delivered to the handler where the program yields (Yield, a yielding WaitForBytes,
    // WaitFor), at most once per kind and poll, never from anywhere else.
    virtual void OnCondition(ConditionHandler handler) = 0;
};

}  // namespace rv52
