#include "module/Report.h"

#include "app/Session.h"
#include "table/Text.h"

#include <algorithm>

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
        const auto answer =
            session.prompts.Ask({path + "\r\nThis file already exists.\r\n\r\nReplace existing file?",
                                 "Save Report", Icon::Warning, Buttons::YesNoCancel, Answer::No});
        if (answer == Answer::Yes) return path;
        if (answer == Answer::Cancel) return {};
    }
}

// One job: begun, filled by the page's own steps, sent off. False when the user called it off.
template <class Page>
bool Print(Session& session, PrintJob job, const std::vector<ReportLine>& lines, Page&& page) {
    auto& step = session.steps;
    auto& printer = session.printer;
    const bool toPrinter = step.Value([&] { return printer.Present(); }, true);
    if (!toPrinter) {
        job.path = step.Value([&] { return AskDocumentPath(session, job.title); }, std::string());
        if (job.path.empty()) return false;
    }
    step([&] { printer.Begin(job); });
    for (const auto& line : lines)
        step([&] { printer.PrintLine(line); });
    page();
    step([&] { printer.EndDocument(); });
    return true;
}

void DrawChart(Session& session) {
    session.steps([&] { session.chart.HideLabel(); });
    session.steps([&] { session.printer.DrawChart(ChartRectangle(session.printer.Page())); });
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
        const auto font = step.Value([&] { return ChooseFont(printer.FontNames()); }, std::string(kFont));
        step([&] { notes.printed = printer.DateAndTime(); });

        const bool printed = Print(session, {"RV52 Advance Chart", font, kPoints, kChartPageTop, {}},
                                   ChartPageLines(session, notes), [&] { DrawChart(session); });
        if (printed)
            Print(session, {"RV52 Advance Table", font, kPoints, kTablePageTop, {}},
                  TablePageLines(session, notes), [] {});
    });
}

void mnuPrintSetup_Click(Session& session) {
    session.steps.Procedure([&](Steps& step) { step([&] { session.printer.SetUp(); }); });
}

}  // namespace rv52
