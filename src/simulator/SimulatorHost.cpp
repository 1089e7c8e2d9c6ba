#include "simulator/SimulatorHost.h"

#include "platform/Failure.h"
#include "platform/Line.h"

#include <algorithm>
#include <cstdio>
#include <thread>

namespace rv52 {

namespace {

// Programming stores a byte every few milliseconds: the file follows once it pauses.
constexpr std::chrono::milliseconds kQuiet{100};

// Within a transfer the next byte follows sooner than this.
constexpr std::chrono::milliseconds kAttention{8};

Wire::Clock Now() {
    return std::chrono::steady_clock::now().time_since_epoch();
}

Wire::Clock ByteTime(std::optional<int> bitsPerSecond) {
    if (!bitsPerSecond) return Wire::Clock::zero();
    return Wire::Clock(std::chrono::seconds(SerialSettings::kBitsPerByte)) / *bitsPerSecond;
}

std::unique_ptr<ImageFile> ImageOf(const SimulatorOptions& options) {
    return options.imagePath.empty() ? nullptr : std::make_unique<ImageFile>(options.imagePath);
}

SimulatedModule ModuleOf(const SimulatorOptions& options, ImageFile* image) {
    ModuleOptions module(options.type);
    if (!options.identification.empty()) module.identification = options.identification;
    module.echo = options.echo;
    if (image) module.eeprom = image->LoadOrCreate(module.eeprom);
    return SimulatedModule(std::move(module), Faults(options.faults, options.seed));
}

}  // namespace

SimulatorHost::SimulatorHost(const SimulatorOptions& options)
    : image_(ImageOf(options)),
      module_(ModuleOf(options, image_.get())),
      wire_(module_, ByteTime(options.bitsPerSecond)),
      start_(Now()),
      paced_(options.bitsPerSecond.has_value()) {
    if (options.tracePath.empty()) return;
    trace_.open(options.tracePath, std::ios::trunc);
    if (!trace_) throw FileFailure("cannot write the trace file " + options.tracePath);
}

bool SimulatorHost::Serve() {
    while (SendDueBytes()) {
        if (saveAt_ && *saveAt_ <= Now()) Save();
        const auto event = Wait();
        if (event == PseudoTerminal::Event::Signal) break;
        if (event == PseudoTerminal::Event::Traffic) Receive();
    }
    return Save();
}

void SimulatorHost::Receive() {
    const auto traffic = terminal_.Read();
    const auto now = Now();
    for (int left = traffic.closingsBefore; left > 0; --left)
        wire_.ClosePort(now);
    ReceiveBytes(traffic.bytes, now);
    for (int left = traffic.closingsAfter; left > 0; --left)
        wire_.ClosePort(now);
}

void SimulatorHost::ReceiveBytes(const std::vector<std::uint8_t>& bytes, Clock now) {
    if (bytes.empty()) return;
    attentiveUntil_ = now + kAttention;
    for (const auto byte : bytes) {
        wire_.Send(byte, now);
        Trace(Direction::ToModule, byte, now);
    }
    if (image_ && module_.Stored() != storesSeen_) {
        storesSeen_ = module_.Stored();
        saveAt_ = now + kQuiet;
    }
}

bool SimulatorHost::SendDueBytes() {
    while (const auto arrival = wire_.TakeArrival(Now())) {
        if (arrival->IsHangUp()) {
            terminal_.HangUp();
            std::fputs("rv52_simulator: the line is hung up\n", stderr);
            return false;
        }
        terminal_.Write(*arrival->byte);
        Trace(Direction::ToPc, *arrival->byte, Now());
    }
    return true;
}

std::optional<SimulatorHost::Clock> SimulatorHost::NextMoment() const {
    const auto arrival = wire_.NextArrival();
    if (!arrival || !saveAt_) return arrival ? arrival : saveAt_;
    return std::min(*arrival, *saveAt_);
}

// A byte noticed late is a byte that took longer on the wire, so a paced line is watched without sleep while
// a transfer runs. Yielding leaves the processor to the kernel's own carrying of the bytes.
PseudoTerminal::Event SimulatorHost::Wait() {
    if (!paced_ || Now() >= attentiveUntil_) return terminal_.WaitUntil(NextMoment());
    std::this_thread::yield();
    return terminal_.WaitUntil(Now());
}

void SimulatorHost::Trace(Direction direction, std::uint8_t byte, Clock time) {
    if (!trace_.is_open()) return;
    const std::chrono::duration<double> seconds = time - start_;
    char text[32];
    std::snprintf(text, sizeof text, "%.6f", seconds.count());
    trace_ << text << ' ' << ToText({direction, byte, time}) << std::endl;
}

bool SimulatorHost::Save() {
    saveAt_.reset();
    try {
        if (image_) image_->Save(module_.Eeprom());
    } catch (const FileFailure& failure) {
        std::fprintf(stderr, "rv52_simulator: %s\n", failure.what());
        return false;
    }
    return true;
}

}  // namespace rv52
