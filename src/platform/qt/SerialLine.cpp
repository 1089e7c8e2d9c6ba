#include "platform/qt/SerialLine.h"

#include "platform/ComDevices.h"
#include "platform/Failure.h"
#include "platform/Line.h"
#include "platform/linux/BootClock.h"
#include "platform/linux/PortLock.h"
#include "platform/qt/QtText.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <thread>

namespace rv52 {

namespace {

using namespace std::chrono_literals;

// A sleep may wake late by this much, on a virtual machine above all; the rest of a delay is spun.
constexpr auto kSpin = 400us;
// The longest time without looking at window events while the program waits for bytes.
constexpr auto kLongestSlice = 5ms;
// The same in a delay, where they hold nothing up.
constexpr auto kDelaySlice = 1ms;
constexpr int kWriteTimeout = 1000;  // ms

// Joining the device's group helps only where the group may read and write it.
std::string WayIn(const QFileInfo& device) {
    if (!device.permission(QFileDevice::ReadGroup | QFileDevice::WriteGroup)) return {};
    return " Join the group \"" + FromQt(device.group()) + "\" and log in again.";
}

std::string ReasonOf(const PortLock& lock) {
    if (!lock.program.empty())
        return "another program is using it (" + lock.program + " of user " + lock.user + ").";
    return "a program of user " + lock.user + " that is gone has left its lock on it. Remove " + lock.path +
           " as " + lock.user + " or as the administrator, or start the computer anew.";
}

}  // namespace

SerialLine::SerialLine(const ComDevices& devices) : devices_(devices) {
    QObject::connect(&port_, &QSerialPort::errorOccurred, &port_,
                     [this](QSerialPort::SerialPortError error) { PortError(error); });
    QObject::connect(&port_, &QSerialPort::readyRead, &port_, [this] { lastArrival_ = BootTime(); });
}

void SerialLine::Open(int commPort) {
    device_ = devices_.DeviceOf(commPort);
    lost_.clear();
    name_ = CommPortName(commPort);
    if (device_.empty()) throw PortFailure(name_ + " has no serial device on this computer.");
    name_ += " (" + device_ + ")";
    RequireHold();

    port_.setPortName(ToQt(device_));
    port_.setBaudRate(SerialSettings::kBitsPerSecond);
    port_.setDataBits(QSerialPort::Data8);
    port_.setParity(QSerialPort::NoParity);
    port_.setStopBits(QSerialPort::OneStop);
    port_.setFlowControl(QSerialPort::NoFlowControl);
    port_.setReadBufferSize(SerialSettings::kReceiveBuffer);
    RespectLock();
    if (!port_.open(QIODevice::ReadWrite)) FailToOpen();
    // Devices without modem lines refuse these two; they are none the worse for it.
    port_.setDataTerminalReady(SerialSettings::kDataTerminalReady);
    port_.setRequestToSend(SerialSettings::kRequestToSend);
    counters_.Start(port_.handle());
}

void SerialLine::RequireHold() {
    try {
        if (hold_.Take(device_)) return;
    } catch (const std::system_error& failure) {
        throw PortFailure(name_ + " could not be opened: " + failure.what() + ".");
    }
    throw PortFailure(name_ + " could not be opened: another Corvane RV52 is at work on it.");
}

// The toolkit takes a lock for left behind when it does not bear the name of the program that laid it.
void SerialLine::RespectLock() {
    if (RemoveStaleLock(device_)) return;
    if (const auto lock = LockOn(device_))
        throw PortFailure(name_ + " could not be opened: " + ReasonOf(*lock));
}

void SerialLine::FailToOpen() {
    const QFileInfo file(ToQt(device_));
    const auto reason = FromQt(port_.errorString());
    const auto noTerminal = std::generic_category().message(ENOTTY);
    if (!file.exists()) throw PortFailure(name_ + " could not be opened: the device is not there.");
    if (!file.isReadable() || !file.isWritable())
        throw PortFailure(name_ + " could not be opened: you are not permitted to use it." + WayIn(file));
    if (port_.error() == QSerialPort::PermissionError)
        throw PortFailure(name_ + " could not be opened: another program is using it.");
    if (file.isDir() || reason == noTerminal)
        throw PortFailure(name_ + " could not be opened: it is not a serial device.");
    throw PortFailure(name_ + " could not be opened: " + reason + ".");
}

void SerialLine::Close() noexcept {
    if (port_.isOpen()) port_.close();
}

void SerialLine::RequireOpen() const {
    if (IsOpen()) return;
    if (!lost_.empty()) throw PortFailure(name_ + " is lost: " + lost_ + ".");
    throw PortFailure("The serial port is not open.");
}

// A device that goes away reports so without end until it is closed.
void SerialLine::PortError(QSerialPort::SerialPortError error) {
    if (!port_.isOpen()) return;
    switch (error) {
        case QSerialPort::ResourceError:
        case QSerialPort::ReadError:
        case QSerialPort::WriteError:
            // The system's own reason here is whatever call happened to notice.
            lost_ = QFileInfo::exists(ToQt(device_)) ? "the connection broke off" : "the device is gone";
            port_.close();
            break;
        default:
            break;  // time-outs are the waits' own business, modem lines are not needed
    }
}

void SerialLine::Discard() {
    RequireOpen();
    port_.clear(QSerialPort::Input);
    port_.readAll();
}

std::uint8_t SerialLine::ReadByte() {
    RequireOpen();
    char byte = 0;
    if (port_.getChar(&byte)) return static_cast<std::uint8_t>(byte);
    Close();
    throw PortFailure(name_ + " gave no byte to read.");
}

void SerialLine::SendByte(std::uint8_t byte) {
    RequireOpen();
    const bool taken = port_.putChar(static_cast<char>(byte));
    port_.flush();
    while (taken && port_.isOpen() && port_.bytesToWrite() > 0 && port_.waitForBytesWritten(kWriteTimeout)) {
    }
    RequireOpen();
    if (taken && port_.bytesToWrite() == 0) return;
    Close();
    throw PortFailure(name_ + " does not take bytes to send.");
}

Line::Clock SerialLine::Now() const {
    return BootTime();
}

void SerialLine::Yield() {
    QCoreApplication::processEvents();
    DeliverConditions();
}

void SerialLine::DeliverConditions() {
    if (!IsOpen() || !handler_) return;
    for (const auto condition : counters_.Risen(port_.handle()))
        handler_(condition);
}

int SerialLine::WaitForBytes(int count, Clock deadline, Yielding yielding) {
    for (;;) {
        if (yielding == Yielding::Yes) Yield();
        RequireOpen();
        const auto left = deadline - Now();
        const auto waiting = static_cast<int>(port_.bytesAvailable());
        if (waiting >= count || left <= 0ns) return waiting;
        const auto slice = yielding == Yielding::Yes ? std::min<Clock>(left, kLongestSlice) : left;
        port_.waitForReadyRead(static_cast<int>(std::chrono::ceil<std::chrono::milliseconds>(slice).count()));
    }
}

void SerialLine::WaitFor(std::chrono::milliseconds duration) {
    const auto end = Now() + duration;
    for (;;) {
        Yield();
        const auto left = end - Now();
        if (left <= kSpin) break;
        std::this_thread::sleep_for(std::min<Clock>(left - kSpin, kDelaySlice));
    }
    while (Now() < end) {
    }
    DeliverConditions();
}

}  // namespace rv52
