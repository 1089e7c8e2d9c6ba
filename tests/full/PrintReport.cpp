// Prints the report of a sample table to the default printer, for the test of the print queue.
//   print_report NAME RACE|EX COMMENT   writes the lines it prints to NAME-Chart.lines and NAME-Table.lines
#include "chart/ChartView.h"
#include "module/Report.h"
#include "platform/qt/QtPrinter.h"
#include "support/IdleLine.h"
#include "support/TestSession.h"
#include "table/LimitTables.h"
#include "table/TableDisplay.h"

#include <QApplication>

#include <fstream>

namespace rv52 {
namespace {

class LoggedPrinter : public QtPrinter {
 public:
    LoggedPrinter(Files& files, std::string name) : QtPrinter(files), name_(std::move(name)) {}

    void Begin(const PrintJob& job) override {
        QtPrinter::Begin(job);
        log_ = std::ofstream(name_ + job.title.substr(job.title.rfind(' ')).replace(0, 1, "-") + ".lines");
    }
    void PrintLine(const std::vector<PrintItem>& items) override {
        QtPrinter::PrintLine(items);
        log_ << test::LineOf(items) << '\n';
    }

 private:
    std::string name_;
    std::ofstream log_;
};

void Print(const std::string& name, TableType type, const std::string& comment) {
    test::IdleLine line;
    test::TestSession test(line);
    LoggedPrinter printer(test.files, name);
    Session session(Ports{line, test.prompts, test.view, test.shell, test.files, test.settings, printer});
    ChartView chart(
        session, [](const std::function<void()>& handler) { handler(); }, nullptr);
    printer.SetChartDrawing(
        [&](QPainter& painter, const QRectF& place) { chart.DrawOnPaper(painter, place); });

    // A job that is thrown away never arrives.
    printer.Begin({"RV52 Discarded", "Courier New", 8, 500, {}});
    printer.PrintLine({{10, "not to be seen"}});
    printer.Discard();

    session.state.BrandingLines = {"Emberline"};
    session.state.FirmwareId = "RV52A 8.1";
    session.state.TableType = type;
    LoadChartTemplate(session, type);
    session.table.Replace(LoadLimitTable(session.files, type, Limit::Maximum).value());
    SetUpTableGrid(session, type);
    CopyChartToGrid(session);
    test.prompts.ExpectText({"Serial number or comment?", "Optional Information Entry", ""}, comment);
    mnuPrintTable_Click(session);
}

}  // namespace
}  // namespace rv52

// A box that is not expected has been noted as a failure of a test.
int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    const QApplication application(argc, argv);
    if (argc != 4) return 2;
    rv52::Print(argv[1], rv52::TypeNamedIn(argv[2]), argv[3]);
    return testing::UnitTest::GetInstance()->ad_hoc_test_result().Failed() ? 1 : 0;
}
