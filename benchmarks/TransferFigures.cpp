#include "BareLine.h"
#include "Groups.h"
#include "QuietSession.h"
#include "Samples.h"
#include "ShownProgram.h"
#include "SimulatedLine.h"
#include "WholeProcess.h"
#include "link/commands/LinkProcedures.h"
#include "module/EepromImage.h"
#include "platform/Line.h"
#include "platform/linux/ChildLife.h"
#include "platform/qt/QtText.h"
#include "table/commands/TableDisplay.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <numeric>
#include <stdexcept>
#include <sys/resource.h>
#include <sys/wait.h>
#include <tuple>
#include <unistd.h>

namespace rv52::bench {

namespace {

using Seconds = std::chrono::duration<double>;

constexpr int kRuns = 5;
constexpr int kShortRuns = 9;  // of a transfer of some 140 bytes, which one pause of the machine can double
// Times what is due. Where the kernel alone takes nearly that, this much more than the kernel.
constexpr double kTarget = 1.04;
constexpr double kBusyTarget = 1.08;
constexpr double kAboveBare = 0.03;
constexpr double kLongestGap = 10;  // ms
// The same for rv52, which has this long to begin and to end besides.
constexpr double kToolAboveBare = 0.015;
constexpr double kProcess = 0.03;  // s

void Require(bool good) {
    if (!good) throw std::runtime_error("the transfer failed");
}

// The Download command without its boxes.
void Download(Session& session) {
    HideTable(session);
    ReadFirmwareID(session);
    Require(session.state.CommOK);
    ReadEEPROMData(session);
    Require(session.state.CommOK);
}

// The Upload command without its boxes: programmed, then verified.
void Upload(Session& session) {
    ReadFirmwareID(session);
    Require(session.state.CommOK);
    EncodeEepromImage(session.table.Table(), session.state.ModuleParameters, session.state.TableType,
                      session.state.EepromBuffer);
    WriteEEPROMData(session);
    Require(session.state.CommOK && session.state.VerifyErrors == 0);
}

using Transfer = void (*)(Session&);

struct Kind {
    const char* name;
    TableType type;
    bool echo;
    Transfer run;
};

constexpr Kind kKinds[] = {
    {"transfer.download.EX", TableType::EX, true, Download},
    {"transfer.download.EX.mute", TableType::EX, false, Download},
    {"transfer.download.RACE", TableType::RACE, true, Download},
    {"transfer.download.RACE.mute", TableType::RACE, false, Download},
    {"transfer.upload.EX", TableType::EX, true, Upload},
    {"transfer.upload.EX.mute", TableType::EX, false, Upload},
    {"transfer.upload.RACE", TableType::RACE, true, Upload},
    {"transfer.upload.RACE.mute", TableType::RACE, false, Upload},
};

// What no program can save: the delays that the module is due, and the wire.
struct Due {
    Seconds delays{};
    Seconds wire{};

    Seconds Whole() const { return delays + wire; }
};

// The same procedure with the same module on virtual time tells both exactly.
Due DueTime(const Kind& kind) {
    ModuleOptions options(kind.type);
    options.echo = kind.echo;
    QuietSession quiet(options);
    quiet.session.table.Replace(ExTable());
    kind.run(quiet.session);
    const auto& pauses = quiet.line.Pauses();
    constexpr double byteTime = 1.0 * SerialSettings::kBitsPerByte / SerialSettings::kBitsPerSecond;
    return {std::accumulate(pauses.begin(), pauses.end(), std::chrono::milliseconds(0)),
            Seconds(static_cast<double>(quiet.line.Trace().size()) * byteTime)};
}

Seconds ProcessorTime() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& time) {
        return Seconds(static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6);
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

// The program on a paced line, as it stands on a connected.
class ConnectedProgram {
 public:
    explicit ConnectedProgram(const Kind& kind) : kind_(kind), module_(kind.type, kind.echo) {
        program_.devices.Override(program_.session.state.CommPort, module_.Device());
        program_.ShowExTable();
    }

    const std::string& Device() const { return module_.Device(); }

    double Run() {
        program_.ShowExTable();
        return MedianSeconds(1, [this] { kind_.run(program_.session); });
    }

    // The longest time between two looks at window events. A timer without a delay is served at each.
    double LongestGap() {
        using Clock = std::chrono::steady_clock;
        program_.ShowExTable();
        QTimer look;
        auto last = Clock::now();
        Seconds longest{};
        QObject::connect(&look, &QTimer::timeout, &look, [&] {
            const auto now = Clock::now();
            longest = std::max<Seconds>(longest, now - last);
            last = now;
        });
        look.start(0);
        kind_.run(program_.session);
        return longest.count();
    }

 private:
    const Kind& kind_;
    SimulatedLine module_;
    ShownProgram program_;
};

// The same procedure with nothing around it but the kernel: the least that this machine takes.
double BareRun(const Kind& kind, const std::string& device) {
    BareLine line(device);
    UnshownSession unshown(line);
    unshown.session.state.EchoMode = kind.echo;
    unshown.session.table.Replace(ExTable());
    return MedianSeconds(1, [&] { kind.run(unshown.session); });
}

// The bare line and the program take turns, so that a machine that is slow for a while is slow for both.
void MeasureKind(Report& report, const Kind& kind) {
    ConnectedProgram connected(kind);
    std::vector<double> bare;
    std::vector<double> runs;
    const int count = kind.type == TableType::RACE ? kShortRuns : kRuns;
    for (int run = 0; run < count; ++run) {
        bare.push_back(BareRun(kind, connected.Device()));
        runs.push_back(connected.Run());
    }
    const double due = DueTime(kind).Whole().count();
    const double least = Median(bare) / due;
    report.Add(Ratio(std::string(kind.name) + ".bare", least, std::nullopt));
    report.Add(Ratio(kind.name, Median(runs) / due, std::max(kTarget, least + kAboveBare)));
}

// Another program that wants all of a processor.
class BusyProcess {
 public:
    BusyProcess() : process_(fork()) {
        if (process_ != 0) return;
        LiveAsLongAs(getppid());
        const volatile bool busy = true;
        while (busy) {
        }
    }
    ~BusyProcess() {
        kill(process_, SIGKILL);
        waitpid(process_, nullptr, 0);
    }
    BusyProcess(const BusyProcess&) = delete;
    BusyProcess& operator=(const BusyProcess&) = delete;

 private:
    pid_t process_;
};

// Where the time of an EX download goes, for each of its bytes; and what it asks of the machine.
void MeasureDownload(Report& report) {
    const auto& kind = kKinds[0];
    ConnectedProgram connected(kind);
    std::vector<double> times;
    std::vector<double> shares;
    std::vector<double> gaps;
    for (int run = 0; run < kRuns; ++run) {
        const auto before = ProcessorTime();
        const double time = connected.Run();
        times.push_back(time);
        shares.push_back((ProcessorTime() - before).count() / time);
        gaps.push_back(connected.LongestGap());
    }
    std::vector<double> busyTimes;
    std::vector<double> busyGaps;
    for (int run = 0; run < kRuns; ++run) {
        const BusyProcess busy;
        busyTimes.push_back(connected.Run());
        busyGaps.push_back(connected.LongestGap());
    }
    const auto due = DueTime(kind);
    const double perByte = 1e6 / kExReadRanges[0].Count();
    report.Add(Ratio("transfer.cpu", Median(shares), 0.25));
    report.Add({"transfer.jitter", Median(gaps) * 1000, "ms", kLongestGap});
    report.Add(Ratio("transfer.busy", Median(busyTimes) / due.Whole().count(), kBusyTarget));
    report.Add({"transfer.busy.jitter", Median(busyGaps) * 1000, "ms", kLongestGap});
    report.Add(Microseconds("transfer.byte", Median(times) * perByte));
    report.Add(Microseconds("transfer.byte.delays", due.delays.count() * perByte));
    report.Add(Microseconds("transfer.byte.wire", due.wire.count() * perByte));
    report.Add(Microseconds("transfer.byte.scheduling", (Median(times) - due.Whole().count()) * perByte));
}

// rv52 as a whole process, on the same paced line.
class Tool {
 public:
    double Run(const SimulatedLine& module, const QStringList& command) const {
        return MedianSeconds(1, [&] {
            QProcess tool;
            tool.start(ProgramBeside("rv52"),
                       QStringList{QStringLiteral("--device"), ToQt(module.Device())} + command);
            Require(tool.waitForFinished(60000) && tool.exitCode() == 0);
        });
    }
    // From the start of the process to its first byte on a line where nobody answers.
    double SecondsToFirstByte() const {
        const int line = posix_openpt(O_RDWR | O_NOCTTY);
        Require(line >= 0 && grantpt(line) == 0 && unlockpt(line) == 0);
        const QString device = QString::fromLocal8Bit(ptsname(line));
        const double median = MedianSeconds(kRuns, [&] {
            QProcess tool;
            tool.start(ProgramBeside("rv52"), {QStringLiteral("--device"), device, QStringLiteral("id")});
            for (char byte = 0; read(line, &byte, 1) != 1;)
                usleep(200);
            tool.kill();
            tool.waitForFinished();
        });
        close(line);
        return median;
    }
};

void MeasureTool(Report& report) {
    const Tool tool;
    const QTemporaryDir folder;
    const auto file = folder.filePath(QStringLiteral("module.tbl"));
    report.Add({"tool.first-byte", tool.SecondsToFirstByte() * 1000, "ms", 30});
    for (const auto& [name, command, kind] :
         {std::tuple("tool.download.EX", QStringList{QStringLiteral("download"), file}, kKinds[0]),
          {"tool.upload.EX", QStringList{QStringLiteral("upload"), file, QStringLiteral("--yes")},
           kKinds[4]}}) {
        const SimulatedLine module(kind.type, kind.echo);
        std::vector<double> bare;
        std::vector<double> runs;
        for (int run = 0; run < kRuns; ++run) {
            bare.push_back(BareRun(kind, module.Device()));
            runs.push_back(tool.Run(module, command));
        }
        // What it may take is 1.03 times what no program can save, and 30 ms for the process.
        const double allowed = 1.03 * DueTime(kind).Whole().count() + kProcess;
        const double least = (Median(bare) + kProcess) / allowed;
        report.Add(Ratio(std::string(name) + ".bare", least, std::nullopt));
        report.Add(Ratio(name, Median(runs) / allowed, std::max(1.0, least + kToolAboveBare)));
    }
}

}  // namespace

void MeasureTransfers(Report& report) {
    for (const auto& kind : kKinds)
        MeasureKind(report, kind);
    MeasureDownload(report);
    MeasureTool(report);
}

}  // namespace rv52::bench
