#pragma once

#include "platform/Rectangle.h"

#include <string>
#include <vector>

namespace rv52 {

// A job of one landscape page.
struct PrintJob {
    std::string title;  // as the printer's queue shows it
    std::string font;
    double points = 0;
    int top = 0;       // where the first line goes, in twips below the top of the printable area
    std::string path;  // the PDF document that the job becomes; empty: it goes to the printer
};

// A text that starts at a character column; column 1 is at the left edge of the printable area.
struct PrintItem {
    int column = 1;
    std::string text;

    bool operator==(const PrintItem&) const = default;
};

// The printable area in twips, and how fine the device is.
struct PrintPage {
    double width = 0;
    double height = 0;
    double twipsPerPixelX = 1;
    double twipsPerPixelY = 1;
};

// Where jobs go.
enum class PrintTarget {
    Printer,    // the one chosen in the setup dialog during this run, the system's default, or its only one
    Unchosen,   // there are several, and none is the default: one has to be chosen first
    Documents,  // there is none: each job needs a path
};

// The printers of the system. Every call throws Failure when it cannot be carried out, and can then be made
// again.
class Printer {
 public:
    virtual ~Printer() = default;

    virtual PrintTarget Target() = 0;
    virtual std::vector<std::string> FontNames() const = 0;
    // The desktop's short date followed by its long time.
    virtual std::string DateAndTime() const = 0;

    // Starts a job; one that has not ended is thrown away.
    virtual void Begin(const PrintJob& job) = 0;
    virtual void PrintLine(const std::vector<PrintItem>& items) = 0;
    // Of the job that has begun.
    virtual PrintPage Page() const = 0;
    // What the chart shows, if anything.
    virtual void DrawChart(const PixelRectangle& place) = 0;
    // Sends the job off. It is over either way: one that was not taken has to be printed again from its
    // start.
    virtual void EndDocument() = 0;
    // Throws away a job that has begun and not ended. Safe at any time.
    virtual void Discard() noexcept = 0;

    // The setup dialog. False when it was cancelled, which changes nothing.
    virtual bool SetUp() = 0;
};

}  // namespace rv52
