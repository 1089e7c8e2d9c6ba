#include "app/CommandLine.h"

#include "platform/ComDevices.h"
#include "platform/Text.h"

#include <charconv>
#include <string_view>

namespace rv52 {

namespace {

// "3=/dev/ttyUSB0"; false when it is anything else.
bool ReadDevice(std::string_view text, std::map<int, std::string>& devices) {
    const auto sign = text.find('=');
    if (sign == std::string_view::npos || sign + 1 == text.size()) return false;
    int commPort = 0;
    const auto result = std::from_chars(text.data(), text.data() + sign, commPort);
    if (result.ec != std::errc{} || result.ptr != text.data() + sign) return false;
    if (commPort < 1 || commPort > kHighestCommPort) return false;
    devices[commPort] = text.substr(sign + 1);
    return true;
}

class Reader {
 public:
    explicit Reader(std::span<const char* const> arguments) : arguments_(arguments) {}

    std::variant<CommandLine, std::string> Read() {
        while (error_.empty() && next_ < arguments_.size())
            ReadOne(arguments_[next_++]);
        if (!error_.empty()) return OneLine(error_);
        return line_;
    }

 private:
    void ReadOne(std::string_view argument) {
        if (argument.empty() || argument.front() != '-') return ReadTableFile(argument);
        const auto sign = argument.find('=');
        const auto option = argument.substr(0, sign);
        if (option == "--com") return ReadCom(Value(argument, sign));
        if (option == "--simulate") return ReadSimulate(Value(argument, sign));
        if (argument == "--help")
            line_.help = true;
        else if (argument == "--version")
            line_.version = true;
        else
            error_ = "unknown option '" + std::string(argument) + "'";
    }

    void ReadTableFile(std::string_view argument) {
        if (!line_.tableFile.empty())
            error_ = "only one table file can be opened";
        else if (argument.empty())
            error_ = "the name of the table file is empty";
        else
            line_.tableFile = argument;
    }

    void ReadCom(std::string_view value) {
        if (error_.empty() && !ReadDevice(value, line_.devices))
            error_ = "--com wants N=DEVICE with N from 1 to 255, for example --com 1=/dev/ttyUSB0";
    }

    void ReadSimulate(std::string_view value) {
        if (value == "RACE")
            line_.simulate = TableType::RACE;
        else if (value == "EX")
            line_.simulate = TableType::EX;
        else if (error_.empty())
            error_ = "--simulate wants RACE or EX";
    }

    // "--option=value" or "--option value".
    std::string_view Value(std::string_view argument, std::size_t sign) {
        if (sign != std::string_view::npos) return argument.substr(sign + 1);
        return next_ < arguments_.size() ? arguments_[next_++] : std::string_view{};
    }

    std::span<const char* const> arguments_;
    std::size_t next_ = 0;
    CommandLine line_;
    std::string error_;
};

}  // namespace

std::variant<CommandLine, std::string> ParseCommandLine(std::span<const char* const> arguments) {
    return Reader(arguments).Read();
}

const char* UsageText() {
    return "usage: corvane_rv52 [--com N=DEVICE]... [--simulate RACE|EX] [TABLE.tbl]\n"
           "\n"
           "  TABLE.tbl           open that table file\n"
           "  --com N=DEVICE      port ComN is that serial device for this run (repeatable)\n"
           "  --simulate RACE|EX  start a simulated module and reach it through the selected port\n"
           "  --help              show this text\n"
           "  --version           show the version\n";
}

}  // namespace rv52
