// Prints the report of a sample table as the program does it, for the test of the print queue.
//   print_report NAME RACE|EX COMMENT [trouble TEXT SPOIL MEND | choose PRINTER TRAY | cancel]
// writes the lines it prints to NAME-Chart.lines and NAME-Table.lines.
//   trouble  runs SPOIL before the first page is sent, expects the failure box with TEXT, runs MEND, answers
//   Retry choose   expects the setup dialog, and chooses in it cancel   expects the setup dialog, and cancels
//   it
#include "chart/ui/ChartView.h"
#include "module/commands/Report.h"
#include "platform/linux/CupsPrintSystem.h"
#include "platform/qt/QtPrinter.h"
#include "platform/qt/QtText.h"
#include "support/IdleLine.h"
#include "support/TestSession.h"
#include "table/LimitTables.h"
#include "table/commands/LoadChartTemplate.h"
#include "table/commands/TableDisplay.h"

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
class Patience {
 public:
    Patience() {
        QObject::connect(&beat_, &QTimer::timeout,
                         [this] { longestGap_ = std::max(longestGap_, gap_.restart()); });
        beat_.start(20);
        gap_.start();
        whole_.start();
    }
    ~Patience() {
        EXPECT_LT(whole_.elapsed(), 5000);
        EXPECT_LT(std::max(longestGap_, gap_.elapsed()), 1500);
    }

 private:
    QTimer beat_;
    QElapsedTimer gap_;
    QElapsedTimer whole_;
    qint64 longestGap_ = 0;
};

class LoggedPrinter : public QtPrinter {
 public:
    LoggedPrinter(Files& files, PrintSystem& system, const Arguments& arguments)
        : QtPrinter(files, system), arguments_(arguments) {
        if (arguments.size() > 4 && arguments[3] == "trouble") spoil_ = arguments.at(5);
    }

    void Begin(const PrintJob& job) override {
        QtPrinter::Begin(job);
        const auto page = job.title.substr(job.title.rfind(' ') + 1);
        log_ = std::ofstream(arguments_.at(0) + "-" + page + ".lines");
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
            if (const auto* dialog = QApplication::activeModalWidget())
                Choose(*dialog);
            else
                ChooseOnceOpen();
        });
    }
    void Choose(const QWidget& dialog) const {
        const bool cancels = arguments_.at(3) == "cancel";
        const auto choose = [&](const char* list, const std::string& name) {
            auto* combo = dialog.findChild<QComboBox*>(QLatin1String(list));
            EXPECT_GE(combo->findText(ToQt(name)), 0) << name;
            combo->setCurrentText(ToQt(name));
        };
        if (!cancels) choose("cboPrinter", arguments_.at(4));
        if (!cancels) choose("cboTray", arguments_.at(5));
        dialog.findChild<QPushButton*>(cancels ? QStringLiteral("cmdCancel") : QStringLiteral("cmdOK"))
            ->click();
    }

    const Arguments arguments_;
    std::string spoil_;
    std::ofstream log_;
};

// The box comes within the time that the print system is given, and the mending while it stands open.
void ExpectTrouble(test::ScriptedPrompts& prompts, const std::string& text, const std::string& mending) {
    prompts.ExpectError(text, Answer::Retry);
    int boxes = 0;
    prompts.whileOpen = [mending, boxes]() mutable {
        if (++boxes == 2) LoggedPrinter::Run(mending);
    };
}

void Print(const Arguments& arguments) {
    const auto type = TypeNamedIn(arguments.at(1));
    test::IdleLine line;
    test::TestSession test(line);
    CupsPrintSystem spooler;
    LoggedPrinter printer(test.files, spooler, arguments);
    Session session(Ports{line, test.prompts, test.view, test.shell, test.files, test.settings, printer});
    ChartView chart(
        session, [](const std::function<void()>& handler) { handler(); }, nullptr);
    printer.SetChartDrawing(
        [&](QPainter& painter, const QRectF& place) { chart.DrawOnPaper(painter, place); });

    const auto mode = arguments.size() > 3 ? arguments[3] : std::string();
    if (mode.empty()) {
        // A job that is thrown away never arrives.
        printer.Begin({"RV52 Discarded", "Courier New", 8, 500, {}});
        printer.PrintLine({{10, "not to be seen"}});
        printer.Discard();
    }

    session.state.BrandingLines = {"Emberline"};
    session.state.FirmwareId = "RV52A 8.1";
    session.state.TableType = type;
    LoadChartTemplate(session, type);
    session.table.Replace(LoadLimitTable(session.files, type, Limit::Maximum).value());
    SetUpTableGrid(session, type);
    CopyChartToGrid(session);
    test.prompts.ExpectText({"Serial number or comment?", "Optional Information Entry", ""}, arguments.at(2));
    if (mode == "trouble") ExpectTrouble(test.prompts, arguments.at(4), arguments.at(6));
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
    rv52::Print({argv + 1, argv + argc});
    return testing::UnitTest::GetInstance()->ad_hoc_test_result().Failed() ? 1 : 0;
}
