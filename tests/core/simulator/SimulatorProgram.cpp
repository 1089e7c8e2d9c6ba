#include "core/simulator/SimulatorProgram.h"

#include <array>
#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace rv52::test {

namespace {

constexpr int kPatience = 5000;  // ms

bool HasBytes(int descriptor) {
    pollfd event{descriptor, POLLIN, 0};
    return poll(&event, 1, kPatience) > 0;
}

std::string ReadLine(int descriptor) {
    std::string line;
    char character = 0;
    while (HasBytes(descriptor) && read(descriptor, &character, 1) == 1 && character != '\n')
        line += character;
    return line;
}

}  // namespace

SimulatorProgram::SimulatorProgram(std::vector<std::string> arguments) {
    std::array<int, 2> out{};
    if (pipe2(out.data(), O_CLOEXEC) != 0) return;
    std::string program = RV52_SIMULATOR;
    std::vector<char*> argv{program.data()};
    for (auto& argument : arguments)
        argv.push_back(argument.data());
    argv.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, out[1], STDOUT_FILENO);
    EXPECT_EQ(posix_spawn(&pid_, program.c_str(), &actions, nullptr, argv.data(), environ), 0);
    posix_spawn_file_actions_destroy(&actions);
    close(out[1]);
    firstLine_ = ReadLine(out[0]);
    close(out[0]);
}

SimulatorProgram::~SimulatorProgram() {
    if (pid_ > 0) End(SIGKILL);
}

int SimulatorProgram::End(int signal) {
    if (signal != 0) kill(pid_, signal);
    int status = 0;
    waitpid(pid_, &status, 0);
    pid_ = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

SerialDevice::SerialDevice(const std::string& path) : descriptor_(open(path.c_str(), O_RDWR | O_NOCTTY)) {
    EXPECT_GE(descriptor_, 0) << path;
}

SerialDevice::~SerialDevice() {
    close(descriptor_);
}

Bytes SerialDevice::Exchange(const Bytes& sent, std::size_t count) {
    EXPECT_EQ(write(descriptor_, sent.data(), sent.size()), static_cast<ssize_t>(sent.size()));
    Bytes received;
    while (received.size() < count && HasBytes(descriptor_)) {
        std::uint8_t byte = 0;
        gone_ = read(descriptor_, &byte, 1) != 1;
        if (gone_) break;
        received.push_back(byte);
    }
    return received;
}

}  // namespace rv52::test
