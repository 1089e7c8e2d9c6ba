#pragma once

#include <cmath>
#include <string>
#include <vector>

namespace rv52 {

// Upright, in points, with the strips along its edges that the printer cannot reach.
struct PrintPaper {
    double width = 0;
    double height = 0;
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;
};

inline bool SameSize(const PrintPaper& a, const PrintPaper& b) {
    return std::abs(a.width - b.width) < 1 && std::abs(a.height - b.height) < 1;
}

struct PaperTray {
    std::string key;   // as the print system calls it
    std::string name;  // as people do
};

// What a printer can be loaded with, as far as the print system knows.
struct PrintMedia {
    std::vector<PrintPaper> papers;  // the one that is used unless another is chosen comes first
    std::vector<PaperTray> trays;
};

struct PrintQueue {
    std::string name;
    bool isDefault = false;
};

// What becomes of a PDF document.
struct PrintOrder {
    std::string queue;
    std::string title;
    PrintPaper paper;
    std::string tray;  // empty: whichever the printer takes
};

// The spooler between the program and the printers. A call ends after five seconds at most, whatever the
// spooler does; one that it does not carry out throws Failure.
class PrintSystem {
 public:
    virtual ~PrintSystem() = default;

    // None where no spooler runs.
    virtual std::vector<PrintQueue> Queues() = 0;
    virtual PrintMedia Media(const std::string& queue) = 0;
    // Returns once the spooler has accepted the document, without waiting for paper.
    virtual void Send(const PrintOrder& order, const std::string& document) = 0;
};

}  // namespace rv52
