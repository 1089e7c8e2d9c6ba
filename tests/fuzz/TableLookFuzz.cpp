#include "chart/ui/ChartView.h"
#include "fuzz/Bytes.h"
#include "fuzz/Screen.h"
#include "fuzz/Target.h"
#include "module/commands/Report.h"
#include "platform/qt/QtPrinter.h"
#include "support/IdleLine.h"
#include "support/ShownTable.h"
#include "table/Numbers.h"
#include "table/commands/LoadChartTemplate.h"
#include "table/ui/GridView.h"

#include <bit>
#include <cfloat>
#include <cmath>

namespace rv52::fuzz {

namespace {

// Any number that a table file may hold; the usual ones are the likeliest.
double DegreesOf(Bytes& bytes) {
    constexpr double odd[] = {DBL_MAX,       -DBL_MAX, 5e-324, -0.0,   1e-7, 2147483648.0,
                              -2147483649.0, 1e16,     45.05,  -1e300, 1e39, 0.1};
    const int kind = bytes.Next();
    if (kind < 192) return kind * 0.25;
    if (kind < 224) return odd[static_cast<std::size_t>(kind) % std::size(odd)];
    std::uint64_t bits = 0;
    for (int byte = 0; byte < 8; ++byte)
        bits = bits << 8U | static_cast<std::uint64_t>(bytes.Next());
    const auto degrees = std::bit_cast<double>(bits);
    return std::isfinite(degrees) ? degrees : 0;
}

// A system without printers: the pages become documents.
struct NoSpooler : PrintSystem {
    std::vector<PrintQueue> Queues() override { return {}; }
    PrintMedia Media(const std::string&) override { return {}; }
    void Send(const PrintOrder&, const std::string&) override {}
};

// A desk with the real chart, grid and printer, which writes into memory.
struct FuzzedSession {
    test::IdleLine line;
    test::TestSession test{line};
    Session& session = test.session;
    ChartView chart{session, [](const auto& event) { event(); }};
    GridView grid{session, [](const auto& event) { event(); }, [](const auto&) {}};
    test::MemoryFiles files;
    NoSpooler spooler;
    QtPrinter printer{files, spooler};
};

void Print(FuzzedSession& desk) {
    const ReportNotes notes{"today", "fuzz"};
    desk.printer.SetChartDrawing(
        [&](QPainter& painter, const QRectF& place) { desk.chart.DrawOnPaper(painter, place); });
    Require(desk.printer.Target() == PrintTarget::Documents, "there is no printer");
    for (const bool chart : {true, false}) {
        desk.printer.Begin({"Report", "Courier New", 8, chart ? 500 : 2000, "/page.pdf"});
        for (const auto& text :
             chart ? ChartPageLines(desk.session, notes) : TablePageLines(desk.session, notes))
            desk.printer.PrintLine(text);
        if (chart) desk.printer.DrawChart(ChartRectangle(desk.printer.Page()));
        desk.printer.EndDocument();
        const auto& page = desk.files.contents["/page.pdf"];
        Require(page.find("%%EOF") != std::string::npos && page.size() < 2'000'000, "a page on paper");
    }
}

}  // namespace

void Target(std::string_view input) {
    NeedApplication();
    static auto& desk = *new FuzzedSession;
    Bytes bytes(input);
    AdvanceTable table(bytes.Next() % 2 == 0 ? TableType::RACE : TableType::EX);
    const int width = 1 + 4 * bytes.Next();
    const int height = 1 + 4 * bytes.Next();
    ForEachCell(table.Type(), [&](Cell cell) { table.SetCell(cell, DegreesOf(bytes)); });
    Require(LoadChartTemplate(desk.session, table.Type()), "the template is there");
    test::ShowAs(desk.session, table);
    const Cell last{Column(16), Row(1)};
    desk.session.chart.ShowLabel(last, FormatTenths(table.GetCell(last)));
    for (QWidget* widget : std::initializer_list<QWidget*>{&desk.chart, &desk.grid}) {
        widget->resize(width, height);
        Require(!widget->grab().isNull(), "it can be looked at");
    }
    Print(desk);
}

}  // namespace rv52::fuzz
