#include "platform/linux/LineCounters.h"

#include <linux/serial.h>
#include <sys/ioctl.h>

namespace rv52 {

namespace {

constexpr std::array kConditions{LineCondition::Framing, LineCondition::HardwareOverrun,
                                 LineCondition::ReceiveOverflow, LineCondition::Parity};

}  // namespace

void LineCounters::Start(int device) {
    last_ = Read(device);
}

std::vector<LineCondition> LineCounters::Risen(int device) {
    if (!last_.known) return {};
    const auto now = Read(device);
    if (!now.known) return {};
    std::vector<LineCondition> risen;
    for (std::size_t kind = 0; kind < kConditions.size(); ++kind)
        if (now.of[kind] != last_.of[kind]) risen.push_back(kConditions[kind]);
    last_ = now;
    return risen;
}

LineCounters::Counts LineCounters::Read(int device) {
    serial_icounter_struct counter{};
    if (ioctl(device, TIOCGICOUNT, &counter) != 0) return {};
    return {true, {counter.frame, counter.overrun, counter.buf_overrun, counter.parity}};
}

}  // namespace rv52
