#pragma once

#include "platform/Printer.h"

namespace rv52 {

// For programs that print nothing.
class NoPrinter : public Printer {
 public:
    PrintTarget Target() override { return PrintTarget::Documents; }
    std::vector<std::string> FontNames() const override { return {}; }
    std::string DateAndTime() const override { return {}; }
    void Begin(const PrintJob&) override {}
    void PrintLine(const std::vector<PrintItem>&) override {}
    PrintPage Page() const override { return {}; }
    void DrawChart(const PixelRectangle&) override {}
    void EndDocument() override {}
    void Discard() noexcept override {}
    bool SetUp() override { return false; }
};

}  // namespace rv52
