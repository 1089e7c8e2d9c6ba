// Prints the report of a sample table as the program does it, for the test of the print queue.
//   print_report NAME RACE|EX COMMENT [trouble TEXT SPOIL MEND | choose PRINTER TRAY | cancel]
// writes the lines it prints to NAME-Chart.lines and NAME-Table.lines.
//   trouble         runs SPOIL before the first page is sent, expects the failure box with TEXT, runs MEND,
//                   and answers Retry
//   choose, cancel  expects the setup dialog, and chooses in it or cancels it
#include "chart/ui/ChartView.h"
#include "module/commands/Report.h"
#include "platform/linux/CupsPrintSystem.h"
#include "platform/qt/QtPrinter.h"
#include "platform/qt/QtText.h"
#include "support/IdleLine.h"
#include "support/ShownTable.h"
#include "table/commands/LoadChartTemplate.h"

#include <QApplication>
#include <QComboBox>
#include <QElapsedTimer>
#include <QPushButton>
#include <QTimer>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <utility>

namespace rv52 {
namespace {

using Arguments = std::vector<std::string>;

// Whatever the print system does, it is not waited for, and the windows live on meanwhile.
struct Patience {
    Patience() {
        QObject::connect(&beat, &QTimer::timeout,
                         [this] { longestGap = std::max(longestGap, gap.restart()); });
        beat.start(20);
        gap.start();
        whole.start();
    }
    ~Patience() {
        EXPECT_LT(whole.elapsed(), 5000);
        EXPECT_LT(std::max(longestGap, gap.elapsed()), 1500);
    }

    QTimer beat;
    QElapsedTimer gap;
    QElapsedTimer whole;
    qint64 longestGap = 0;
};

class LoggedPrinter : public QtPrinter {
 public:
    LoggedPrinter(Files& files, PrintSystem& system, const Arguments& arguments)
        : QtPrinter(files, system), arguments_(arguments) {
        if (arguments[3] == "trouble") spoil_ = arguments[5];
    }

    void Begin(const PrintJob& job) override {
        QtPrinter::Begin(job);
        log_ = std::ofstream(arguments_[0] + "-" + job.title.substr(job.title.rfind(' ') + 1) + ".lines");
    }
    void PrintLine(const std::vector<PrintItem>& items) override {
        QtPrinter::PrintLine(items);
        log_ << test::LineOf(items) << '\n';
    }
    void EndDocument() override {
        log_.close();
        Run(std::exchange(spoil_, {}));
        const Patience patience;
        QtPrinter::EndDocument();
    }
    bool SetUp() override {
        asked = true;
        ChooseOnceOpen();
        return QtPrinter::SetUp();
    }

    static void Run(const std::string& command) {
        if (command.empty()) return;
        EXPECT_EQ(std::system(command.c_str()), 0) << command;
    }

    bool asked = false;

 private:
    // Window events are served while the printers are asked for, before there is a dialog.
    void ChooseOnceOpen() {
        QTimer::singleShot(1, qApp, [this] {
            const auto* dialog = QApplication::activeModalWidget();
            if (dialog == nullptr) return ChooseOnceOpen();
            const bool cancels = arguments_[3] == "cancel";
            if (!cancels) Choose(*dialog, "cboPrinter", arguments_[4]);
            if (!cancels) Choose(*dialog, "cboTray", arguments_[5]);
            dialog->findChild<QPushButton*>(QLatin1String(cancels ? "cmdCancel" : "cmdOK"))->click();
        });
    }
    static void Choose(const QWidget& dialog, const char* list, const std::string& name) {
        auto* combo = dialog.findChild<QComboBox*>(QLatin1String(list));
        EXPECT_GE(combo->findText(ToQt(name)), 0) << name;
        combo->setCurrentText(ToQt(name));
    }

    const Arguments arguments_;
    std::string spoil_;
    std::ofstream log_;
};

void Print(const Arguments& arguments) {
    const auto& mode = arguments[3];
    const auto type = TypeNamedIn(arguments[1]);
    test::IdleLine line;
    test::TestSession test(line);
    CupsPrintSystem spooler;
    LoggedPrinter printer(test.files, spooler, arguments);
    Session session(Ports{line, test.prompts, test.view, test.shell, test.files, test.settings, printer});
    ChartView chart(
        session, [](const std::function<void()>& handler) { handler(); }, nullptr);
    printer.SetChartDrawing(
        [&](QPainter& painter, const QRectF& place) { chart.DrawOnPaper(painter, place); });

    if (mode.empty()) {
        // A job that is thrown away never arrives.
        printer.Begin({"RV52 Discarded", "Courier New", 8, 500, {}});
        printer.PrintLine({{10, "not to be seen"}});
        printer.Discard();
    }

    session.state.BrandingLines = {"Emberline"};
    session.state.FirmwareId = "RV52A 8.1";
    LoadChartTemplate(session, type);
    test::ShowAs(session, LoadLimitTable(session.files, type, Limit::Maximum).value());
    test.prompts.ExpectText({"Serial number or comment?", "Optional Information Entry", ""}, arguments[2]);
    if (mode == "trouble") test.prompts.ExpectError(arguments[4], Answer::Retry);
    // The mending while the failure box stands open, which is the second one.
    test.prompts.whileOpen = [&, boxes = 0]() mutable {
        if (++boxes == 2) LoggedPrinter::Run(arguments[6]);
    };
    mnuPrintTable_Click(session);
    EXPECT_EQ(printer.asked, mode == "choose" || mode == "cancel");
}

}  // namespace
}  // namespace rv52

// A box that is not expected has been noted as a failure of a test.
int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    const QApplication application(argc, argv);
    if (argc < 4) return 2;
    rv52::Arguments arguments(argv + 1, argv + argc);
    arguments.resize(7);
    rv52::Print(arguments);
    return testing::UnitTest::GetInstance()->ad_hoc_test_result().Failed() ? 1 : 0;
}
