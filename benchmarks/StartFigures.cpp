#include "Groups.h"
#include "Samples.h"
#include "WholeProcess.h"
#include "platform/qt/QtFiles.h"
#include "platform/qt/QtText.h"
#include "table/ModuleParameters.h"
#include "table/TableFile.h"

#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <vector>

namespace rv52::bench {

namespace {

constexpr int kRuns = 9;
// Times the bare program. Where the toolkit alone takes nearly that to show such windows, this much more than
// it.
constexpr double kStartTarget = 1.2;
constexpr double kStartAbovePlain = 0.15;
constexpr double kMemoryTarget = 1.3;
constexpr double kMemoryAbovePlain = 0.08;

struct Start {
    double mapped = 0;   // us from the start of the process to its first window
    double painted = 0;  // us from the start of the process to the window that counts
    double ready = 0;    // us from the end of the splash
    double memory = 0;   // KiB
};

// The programs as they are, with a probe looking on.
class Programs {
 public:
    Programs() {
        environment_ = screen_.Environment();
        environment_.insert(QStringLiteral("LD_PRELOAD"), ProgramBeside("librv52_bench_probe.so"));
        environment_.insert(QStringLiteral("XDG_CONFIG_HOME"), settings_.path());
    }

    Start Run(const char* program, const QStringList& arguments, const char* until) {
        environment_.insert(QStringLiteral("RV52_BENCH_UNTIL"), QString::fromLatin1(until));
        auto said = LinesOf(ProgramBeside(program), arguments, environment_);
        const double started = said.at("started");
        const auto closed = said.find("splash-closed");
        const double painted = said.at("painted");
        return {said.at("mapped") - started, painted - started,
                closed == said.end() ? 0 : painted - closed->second, said.at("memory")};
    }

 private:
    VirtualScreen screen_;
    QTemporaryDir settings_;
    QProcessEnvironment environment_;
};

double MedianOf(const std::vector<Start>& starts, double Start::*part) {
    std::vector<double> values;
    for (const auto& start : starts)
        values.push_back(start.*part);
    return Median(std::move(values));
}

}  // namespace

void MeasureStart(Report& report) {
    Programs programs;
    const auto file = ScratchFile("shown.tbl");
    QtFiles().ReplaceWhole(file, FormatTableFile(ExTable(), {}));
    // Once unmeasured: the files of both are in memory then.
    programs.Run("rv52_bench_bare", {}, "bare");
    std::vector<Start> bare;
    std::vector<Start> plain;
    std::vector<Start> program;
    std::vector<Start> shown;
    for (int run = 0; run < kRuns; ++run) {
        bare.push_back(programs.Run("rv52_bench_bare", {}, "bare"));
        program.push_back(programs.Run("corvane_rv52", {}, "frmCorvane_Main"));
        plain.push_back(programs.Run("rv52_bench_plain", {}, "plain"));
        shown.push_back(programs.Run("corvane_rv52", {ToQt(file)}, "Chart3D1"));
    }
    QFile::remove(ToQt(file));
    const double bareMapped = MedianOf(bare, &Start::mapped);
    const double bareMemory = MedianOf(bare, &Start::memory);
    const double plainStart = MedianOf(plain, &Start::mapped) / bareMapped;
    const double plainMemory = MedianOf(plain, &Start::memory) / bareMemory;
    report.Add(Microseconds("start.bare", bareMapped));
    report.Add(Ratio("start.window.plain", plainStart, std::nullopt));
    report.Add(Ratio("start.window", MedianOf(program, &Start::mapped) / bareMapped,
                     std::max(kStartTarget, plainStart + kStartAbovePlain)));
    report.Add(Ratio("start.ready", MedianOf(program, &Start::ready) / MedianOf(bare, &Start::painted), 1.5));
    report.Add({"memory.bare", bareMemory, "KiB"});
    report.Add(Ratio("memory.plain", plainMemory, std::nullopt));
    report.Add(Ratio("memory", MedianOf(shown, &Start::memory) / bareMemory,
                     std::max(kMemoryTarget, plainMemory + kMemoryAbovePlain)));
}

}  // namespace rv52::bench
