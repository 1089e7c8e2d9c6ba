#include "Inner.h"

#include "Figures.h"

#include <vector>

namespace rv52::bench {

namespace {

constexpr int kRepetitions = 9;
constexpr double kLeastTime = 0.1;  // s, each repetition

// The library prints nothing: figures are lines of our own.
class Collector : public benchmark::BenchmarkReporter {
 public:
    bool ReportContext(const Context&) override { return true; }
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const auto& run : runs)
            if (run.run_type == Run::RT_Iteration)
                times_.push_back(run.real_accumulated_time / static_cast<double>(run.iterations));
    }
    double MedianMicroseconds() const { return Median(times_) * 1e6; }

 private:
    std::vector<double> times_;
};

}  // namespace

double InnerTime(const std::string& name, const std::function<void()>& body) {
    benchmark::RegisterBenchmark(name.c_str(),
                                 [&body](benchmark::State& state) {
                                     for ([[maybe_unused]] auto turn : state)
                                         body();
                                 })
        ->MinTime(kLeastTime)
        ->Repetitions(kRepetitions);
    Collector collector;
    benchmark::RunSpecifiedBenchmarks(&collector, nullptr, "all");
    benchmark::ClearRegisteredBenchmarks();
    return collector.MedianMicroseconds();
}

}  // namespace rv52::bench
