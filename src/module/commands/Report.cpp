#include "module/commands/Report.h"

#include "app/state/Session.h"
#include "platform/Text.h"
#include "table/commands/FileQuestions.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace rv52 {

namespace {

constexpr const char* kFont = "Courier New";
constexpr const char* kPreferredFont = "Monospac821 BT";
constexpr double kPoints = 8;
constexpr int kChartPageTop = 500;   // twips
constexpr int kTablePageTop = 2000;  // twips

std::string ChooseFont(const std::vector<std::string>& offered) {
    const auto preferred = std::ranges::find(offered, UpperCase(kPreferredFont), UpperCase);
    return preferred == offered.end() ? kFont : *preferred;
}

// Without a printer the job becomes a document that the user places. The empty text when called off.
std::string AskDocumentPath(Session& session, const std::string& title) {
    for (;;) {
        auto path =
            session.prompts.AskSavePath({"Save Report", "PDF documents (*.pdf)|*.pdf", title + ".pdf"});
        if (path.empty() || !session.files.Exists(path)) return path;
        const auto answer = session.prompts.Ask(ExistsBox(path, "Save Report"));
        if (answer == Answer::Yes) return path;
        if (answer == Answer::Cancel) return {};
    }
}

struct ReportPage {
    PrintJob job;
    std::vector<ReportLine> lines;
    bool chart = false;
};

// The surface on the axes of the other type would be a false picture: a table file or a download that did not
// come to its end leaves such a pair behind.
bool ChartFits(const Session& session) {
    const auto& chartTemplate = session.chart.Template();
    return !chartTemplate || !session.table.HasTable() ||
           chartTemplate->rows == session.table.Table().RowCount();
}

void DrawChart(Session& session) {
    session.steps([&] { session.chart.HideLabel(); });
    if (!ChartFits(session)) return;
    session.steps([&] { session.printer.DrawChart(ChartRectangle(session.printer.Page())); });
}

// False when the page could not be begun and the user goes on without it: nothing else of it is tried.
bool FillPage(Session& session, const ReportPage& page) {
    auto& step = session.steps;
    auto& printer = session.printer;
    const auto begin = [&] {
        printer.Begin(page.job);
        return true;
    };
    if (!step.Value(begin, false)) return false;
    for (const auto& line : page.lines)
        step([&] { printer.PrintLine(line); });
    if (page.chart) DrawChart(session);
    return true;
}

// A page that was not taken is printed once more from its start.
void PrintPage(Session& session, const ReportPage& page) {
    if (!FillPage(session, page)) return;
    bool refused = false;
    session.steps([&] {
        if (std::exchange(refused, true) && !FillPage(session, page)) return;
        session.printer.EndDocument();
    });
}

// False when the user called it off.
bool Print(Session& session, PrintTarget target, ReportPage page) {
    if (target == PrintTarget::Documents) {
        auto& path = page.job.path;
        path = session.steps.Value([&] { return AskDocumentPath(session, page.job.title); }, std::string());
        if (path.empty()) return false;
    }
    PrintPage(session, page);
    return true;
}

// Both pages go to the same kind of target. Nothing when there is a choice of printers and none was made.
std::optional<PrintTarget> ChooseTarget(Session& session) {
    auto& step = session.steps;
    const auto target = step.Value([&] { return session.printer.Target(); }, PrintTarget::Documents);
    if (target != PrintTarget::Unchosen) return target;
    const bool chosen = step.Value([&] { return session.printer.SetUp(); }, false);
    if (!chosen) return std::nullopt;
    return step.Value([&] { return session.printer.Target(); }, PrintTarget::Printer);
}

}  // namespace

void mnuPrintTable_Click(Session& session) {
    auto& printer = session.printer;
    const auto discard = [&] { printer.Discard(); };
    session.steps.Procedure(discard, [&](Steps& step) {
        ReportNotes notes;
        step([&] {
            notes.comment =
                session.prompts.AskText({"Serial number or comment?", "Optional Information Entry", ""});
        });
        const auto target = ChooseTarget(session);
        if (!target) return;
        const auto font = step.Value([&] { return ChooseFont(printer.FontNames()); }, std::string(kFont));
        step([&] { notes.printed = printer.DateAndTime(); });

        const PrintJob chart{"RV52 Advance Chart", font, kPoints, kChartPageTop, {}};
        if (!Print(session, *target, {chart, ChartPageLines(session, notes), true})) return;
        const PrintJob table{"RV52 Advance Table", font, kPoints, kTablePageTop, {}};
        Print(session, *target, {table, TablePageLines(session, notes)});
    });
}

void mnuPrintSetup_Click(Session& session) {
    session.steps.Procedure([&](Steps& step) { step([&] { session.printer.SetUp(); }); });
}

}  // namespace rv52
