#pragma once

#include "platform/Failure.h"
#include "platform/Printer.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

namespace rv52::test {

// As it would stand on paper.
inline std::string LineOf(const std::vector<PrintItem>& items) {
    std::string line;
    for (const auto& [column, text] : items) {
        line.resize(std::max(line.size(), static_cast<std::size_t>(column - 1)), ' ');
        line += text;
    }
    return line;
}

// Keeps the jobs it is given, their lines as on paper.
class RecordingPrinter : public Printer {
 public:
    struct Job {
        PrintJob start;
        std::vector<std::string> lines;
        std::vector<PixelRectangle> charts;
    };

    PrintTarget Target() override { return target; }
    std::vector<std::string> FontNames() const override { return fonts; }
    std::string DateAndTime() const override { return "2/3/2024 4:05:06 PM"; }

    void Begin(const PrintJob& job) override {
        MayFail("begin");
        open_ = Job{job, {}, {}};
    }
    void PrintLine(const std::vector<PrintItem>& items) override {
        MayFail("line");
        Open().lines.push_back(LineOf(items));
    }
    PrintPage Page() const override { return {15000, 11000, 2.4, 2.4}; }
    void DrawChart(const PixelRectangle& place) override {
        MayFail("chart");
        Open().charts.push_back(place);
    }
    void EndDocument() override {
        const auto ended = Open();
        open_.reset();
        MayFail("end");
        jobs.push_back(ended);
    }
    void Discard() noexcept override { ++discarded; }
    bool SetUp() override {
        MayFail("setup");
        ++setUps;
        if (chooses) target = PrintTarget::Printer;
        return chooses;
    }

    PrintTarget target = PrintTarget::Printer;
    bool chooses = true;  // the user, in the setup dialog
    std::vector<std::string> fonts{"Courier New"};
    std::string failing;  // the operation that fails
    std::vector<Job> jobs;
    int discarded = 0;
    int setUps = 0;

 private:
    void MayFail(const std::string& operation) const {
        if (operation == failing) throw Failure("the printer is on fire");
    }

    Job& Open() {
        if (!open_) throw Failure("No page is being printed.");
        return *open_;
    }

    std::optional<Job> open_;
};

}  // namespace rv52::test
