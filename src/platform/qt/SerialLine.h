#pragma once

#include "platform/ComDevices.h"
#include "platform/Line.h"
#include "platform/linux/DeviceHold.h"
#include "platform/linux/LineCounters.h"

#include <QSerialPort>

#include <string>

namespace rv52 {

// The serial port with the monotonic clock and the event loop. Delays are never shorter than asked, and
// longer by some microseconds only: a transfer is thousands of them.
class SerialLine : public Line {
 public:
    explicit SerialLine(const ComDevices& devices);

    bool IsOpen() const override { return port_.isOpen(); }
    void Open(int commPort) override;
    void Close() noexcept override;
    void EndHold() noexcept override { hold_.End(); }
    void Discard() override;
    std::uint8_t ReadByte() override;
    void SendByte(std::uint8_t byte) override;
    Clock Now() const override;
    Clock LastArrival() const override { return lastArrival_; }
    void Yield() override;
    int WaitForBytes(int count, Clock deadline, Yielding yielding) override;
    void WaitFor(std::chrono::milliseconds duration) override;
    void OnCondition(ConditionHandler handler) override { handler_ = std::move(handler); }

 private:
    void RequireOpen() const;
    void RequireHold();
    [[noreturn]] void FailToOpen();
    void RespectLock();
    void PortError(QSerialPort::SerialPortError error);
    void DeliverConditions();

    const ComDevices& devices_;
    QSerialPort port_;
    DeviceHold hold_;
    LineCounters counters_;
    ConditionHandler handler_;
    std::string device_;
    std::string name_;  // "Com3 (/dev/ttyS2)", for messages
    Clock lastArrival_{0};
    std::string lost_;  // why the device went away, while that is the reason for the port being closed
};

}  // namespace rv52
