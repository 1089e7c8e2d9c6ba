#include "cli/Tool.h"

#include "app/Leaving.h"
#include "app/RunCommand.h"
#include "app/StartUp.h"
#include "platform/Failure.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <cstdio>
#include <iostream>
#include <iterator>
#include <unistd.h>
#include <utility>

namespace rv52::cli {

Answer Answers::Ask(const MessageBox& box) {
    switch (box.buttons) {
        case Buttons::OkCancel:
            return Answer::Ok;  // the tool has asked before
        case Buttons::YesNoCancel:
            return Answer::No;  // nothing is saved but what the command saves
        default:
            told.push_back(box.text);
            return DismissAnswer(box.buttons);
    }
}

std::string Answers::AskText(const InputBox&) {
    return std::exchange(text, {});
}

Progress::Progress(bool quiet) : shown_(!quiet && isatty(STDERR_FILENO) != 0) {}

void Progress::ShowProgress(const std::string& caption) {
    caption_ = caption;
    percent_ = -1;
    SetProgress(0);
}

void Progress::SetProgress(int percent) {
    if (!shown_ || percent == std::exchange(percent_, percent)) return;
    std::fprintf(stderr, "\r%s %3d %%", caption_.c_str(), percent);
}

void Progress::HideProgress() {
    if (shown_) std::fputs("\r\033[K", stderr);
}

bool ToolFiles::Exists(const std::string& path) const {
    return path == "-" || QtFiles::Exists(path);
}

std::string ToolFiles::ReadWhole(const std::string& path) const {
    if (path == served_.first) return served_.second;
    if (path != "-") return QtFiles::ReadWhole(path);
    std::string bytes;
    for (char byte = 0; bytes.size() <= std::size_t{kLargest} && std::cin.get(byte);)
        bytes += byte;
    if (bytes.size() > std::size_t{kLargest}) throw FileFailure("Cannot read standard input: far too large");
    return bytes;
}

void ToolFiles::ReplaceWhole(const std::string& path, const std::string& bytes) {
    // A file in the place of what these names lead to would not be where the output goes.
    constexpr std::array names{"-", "/dev/stdout", "/dev/fd/1", "/proc/self/fd/1"};
    if (std::ranges::find(names, path) == names.end()) return QtFiles::ReplaceWhole(path, bytes);
    if (!std::cout.write(bytes.data(), std::ssize(bytes)).flush())
        throw FileFailure("Cannot write to standard output");
}

void ToolLine::Open(int commPort) {
    refused = true;
    SerialLine::Open(commPort);
    refused = false;
}

Tool::Tool(const Options& given) : options(given), progress_(given.quiet) {}

void Tool::Start() {
    if (!StartUp(session)) throw FileFailure(Told());
    if (!answers.told.empty())
        noStoredPort_ = answers.told.front().substr(0, answers.told.front().find('\r'));
    answers.told.clear();
}

void Tool::ConnectModule() {
    if (std::exchange(connected_, true)) return;
    auto& port = session.state.CommPort;
    const bool named = options.port || options.simulate || !options.device.empty();
    if (!named && !noStoredPort_.empty())
        throw FileFailure(noStoredPort_ + " Name the port: --port N or --device PATH.");
    if (options.port) port = *options.port;
    if (!options.device.empty()) devices.Override(port, options.device);
    if (options.simulate)
        devices.Override(port, simulator_.Start(ToText(*options.simulate)), "simulated module");
}

void Tool::Run(const std::function<void(Session&)>& command) {
    const EndSignals signals([this](int) { Signalled(); });
    RunCommand(session, command);
    QCoreApplication::processEvents();  // a signal of the last moment
}

void Tool::Signalled() {
    const auto work = session.state.LinkWork;
    if (!interrupted_ && (work == LinkWork::Programming || work == LinkWork::Verifying))
        std::fprintf(stderr, "%srv52: interrupted; programming and verifying finish first.\n",
                     progress_.Shown() ? "\n" : "");
    interrupted_ = true;
    RequestExit(session);
}

std::string Tool::Told() const {
    std::string said;
    for (const auto& text : answers.told) {
        if (text.starts_with("Firmware ID: ")) continue;
        if (!said.empty()) said += ' ';
        // There is nothing to click here.
        const auto click = text.find(" and click ");
        const auto end = click == std::string::npos ? click : text.find('.', click);
        for (std::size_t i = 0; i < text.size(); ++i)
            if (text[i] != '\r' && (i < click || i >= end)) said += text[i] == '\n' ? ' ' : text[i];
    }
    return said;
}

std::string Tool::Port() const {
    const int port = session.state.CommPort;
    return CommPortName(port) + " (" + devices.NameOf(port) + ")";
}

void Tool::Remark(const std::string& text) const {
    if (!options.quiet) std::cerr << "rv52: " << text << "\n";
}

}  // namespace rv52::cli
