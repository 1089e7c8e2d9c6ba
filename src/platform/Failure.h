#pragma once

#include <stdexcept>
#include <string>

namespace rv52 {

// Something that a step could not do. what() is the description shown in the failure box.
class Failure : public std::runtime_error {
 public:
    using std::runtime_error::runtime_error;
};

// The serial port: it cannot be opened, it is not open, or it went away. It leaves the line closed.
class PortFailure : public Failure {
 public:
    using Failure::Failure;
};

// A file that cannot be read or replaced.
class FileFailure : public Failure {
 public:
    using Failure::Failure;
};

// The two file dialogs fail with numbers of their own.
class FileDialogFailure : public Failure {
 public:
    static constexpr int kFileOpen = 1000;
    static constexpr int kFileSave = 1001;

    FileDialogFailure(int number, std::string source, const std::string& description)
        : Failure(description), number_(number), source_(std::move(source)) {}

    int Number() const { return number_; }
    const std::string& Source() const { return source_; }

 private:
    int number_;
    std::string source_;
};

}  // namespace rv52
