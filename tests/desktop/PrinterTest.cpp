#include "UserActions.h"
#include "module/commands/Report.h"
#include "platform/linux/CupsPrintSystem.h"
#include "platform/qt/Papers.h"
#include "platform/qt/QtPrinter.h"
#include "support/FailureOf.h"

#include <QBuffer>
#include <QComboBox>
#include <QLabel>
#include <QLocale>
#include <QPainter>
#include <QPdfWriter>
#include <QTimer>

namespace rv52::test {

TEST(PrintedTextTest, FitsBothPapersInEveryFontThatMayStandIn) {
    constexpr int letters = 9 + 17 * 8;  // from column 10 on, 17 fields of 8
    for (const auto* family : {"Courier New", "DejaVu Sans Mono", "no such font"})
        for (const auto paper : {QPageSize::A4, QPageSize::Letter}) {
            SCOPED_TRACE(family);
            const auto font = MonospacedFont(QString::fromLatin1(family), 8);
            QBuffer buffer;
            buffer.open(QIODevice::WriteOnly);
            QPdfWriter writer(&buffer);
            writer.setPageLayout(PageAcross(PaperOf(paper)));
            const QFontMetricsF metrics(font, &writer);
            const double column = metrics.horizontalAdvance(QLatin1Char('0'));
            EXPECT_NEAR(column, 0.6 * 8 * writer.logicalDpiX() / 72, 0.05 * column);
            // One width for all, and none lost to rounding over a whole line.
            EXPECT_NEAR(metrics.horizontalAdvance(QString(letters, QLatin1Char('M'))), letters * column, 1);
            EXPECT_LT(letters * column, writer.width());
        }
}

// Printers by name, each with two papers and two trays; what was sent last is kept.
struct Spooler : PrintSystem {
    std::vector<PrintQueue> Queues() override { return queues; }
    PrintMedia Media(const std::string& queue) override {
        if (queue == "broken") throw Failure("out of order");
        return {{PaperOf(QPageSize::A4), PaperOf(QPageSize::A5)}, {{"tray-1", "Upper"}, {"tray-2", "Lower"}}};
    }
    void Send(const PrintOrder& order, const std::string& document) override {
        if (!refusal.empty()) throw Failure(refusal);
        EXPECT_TRUE(document.starts_with("%PDF-"));
        sent = order.queue + ", " + FromQt(PaperName(order.paper)) + ", " + order.tray + ": " + order.title;
    }

    std::vector<PrintQueue> queues;
    std::string refusal;
    std::string sent;
};

class PrinterTest : public testing::Test {
 protected:
    PrinterTest() {
        printer.SetChartDrawing([this](QPainter& painter, const QRectF& place) {
            chart = place;
            painter.drawRect(place);
        });
    }
    void Begin(const char* path) { printer.Begin({"Chart", "Courier New", 8, 500, path}); }

    std::string Print() {
        spooler.sent.clear();
        Begin("");
        printer.EndDocument();
        return spooler.sent;
    }
    // Opens the setup, chooses by the shown names, and presses a button.
    bool UseSetup(const std::vector<std::pair<const char*, const char*>>& choices, const char* button) {
        QTimer::singleShot(0, qApp, [&] {
            auto* dialog = QApplication::activeModalWidget();
            ASSERT_EQ(FromQt(dialog->objectName() + dialog->windowTitle()), "PrinterSetupPrinter Setup");
            for (const auto& [list, name] : choices)
                Find<QComboBox>(*dialog, list).setCurrentText(QString::fromLatin1(name));
            Click(Find<QPushButton>(*dialog, button));
        });
        return printer.SetUp();
    }

    MemoryFiles files;
    Spooler spooler;
    QtPrinter printer{files, spooler};
    QRectF chart;
};

TEST_F(PrinterTest, WritesADocumentOnceItIsWholeOrNothing) {
    Begin("/docs/given up.pdf");
    PrintPage page;
    for (const bool room : {false, true}) {
        SCOPED_TRACE(room);
        Begin("/docs/chart.pdf");
        printer.PrintLine({{10, "Emberline"}, {40, "value"}});
        page = printer.Page();
        printer.DrawChart(ChartRectangle(page));
        EXPECT_TRUE(files.contents.empty());
        files.failWrites = !room;
        EXPECT_EQ(FailureOf([&] { printer.EndDocument(); }), room ? "" : "disk full");
    }
    Begin("/docs/b.pdf");
    printer.Discard();
    EXPECT_EQ(FailureOf([&] { printer.PrintLine({}); }), "No page is being printed.");
    EXPECT_EQ(FailureOf([&] { printer.EndDocument(); }), "No page is being printed.");
    EXPECT_EQ(files.contents.size(), 1U);

    const auto& document = files.contents.at("/docs/chart.pdf");
    EXPECT_TRUE(document.starts_with("%PDF-") && document.find("%%EOF") != std::string::npos);
    EXPECT_EQ(document.find("/Subtype /Image"), std::string::npos) << "lines, not a picture of them";
    // Text stands in it letter by letter: column 10 is nine of them from the margin.
    const auto packed = QByteArray::fromStdString(document.substr(document.find("stream\n") + 7));
    const auto drawn = QString::fromLatin1(qUncompress(QByteArray("\0\1\0\0", 4) + packed));
    const QRegularExpression twoLetters(QStringLiteral("([\\d.]+) \\S+ Td <\\w+> Tj\n([\\d.]+) 0 Td"));
    const auto letters = twoLetters.match(drawn);
    EXPECT_TRUE(letters.hasMatch());
    EXPECT_NEAR(letters.captured(1).toDouble(), 9 * letters.captured(2).toDouble(), 0.1);
    EXPECT_GT(page.width, page.height);
    EXPECT_NEAR(chart.top() * page.twipsPerPixelY, 1000, page.twipsPerPixelY);
    EXPECT_NEAR(chart.bottom() * page.twipsPerPixelY, page.height, page.twipsPerPixelY);

    // The desktop's date; then hours, minutes and seconds, and no time zone.
    const auto date = QLocale::system().toString(QDate::currentDate(), QLocale::ShortFormat);
    const QRegularExpression expected(
        QStringLiteral("^%1 \\d{1,2}:\\d\\d:\\d\\d(\\s?[AP]M)?$").arg(QRegularExpression::escape(date)));
    EXPECT_TRUE(expected.match(ToQt(printer.DateAndTime())).hasMatch()) << printer.DateAndTime();
}

TEST_F(PrinterTest, KeepsThePaperChosenForDocuments) {
    for (const auto& [paper, button, kept] : {std::tuple("A5", "cmdOK", QPageSize::A5),
                                              {"A4", "cmdCancel", QPageSize::A5},
                                              {"A4", "cmdOK", QPageSize::A4}}) {
        SCOPED_TRACE(std::string(paper) + button);
        UseSetup({{"cboPaper", paper}}, button);
        Begin("/docs/a.pdf");
        EXPECT_NEAR(printer.Page().width, PageAcross(PaperOf(kept)).paintRectPoints().width() * 20.0, 40);
    }
}

TEST_F(PrinterTest, GoesWhereTheSetupSaysAndElsewhereOnlyByOK) {
    EXPECT_EQ(printer.Target(), PrintTarget::Documents);
    spooler.queues = {{"A"}};
    EXPECT_EQ(Print(), "A, A4, : Chart");
    spooler.queues = {{"A"}, {"B"}};
    EXPECT_EQ(printer.Target(), PrintTarget::Unchosen);
    EXPECT_EQ(FailureOf([&] { Print(); }), "There is no printer to print on.");
    // None is proposed, so that there is nothing to agree to.
    EXPECT_FALSE(UseSetup({}, "cmdCancel"));
    spooler.queues[1].isDefault = true;
    EXPECT_EQ(Print(), "B, A4, : Chart");

    EXPECT_TRUE(UseSetup({{"cboPrinter", "A"}, {"cboPaper", "A5"}, {"cboTray", "Lower"}}, "cmdOK"));
    EXPECT_EQ(Print(), "A, A5, tray-2: Chart");
    EXPECT_FALSE(UseSetup({{"cboPrinter", "B"}, {"cboPaper", "A4"}, {"cboTray", "Upper"}}, "cmdCancel"));
    EXPECT_EQ(Print(), "A, A5, tray-2: Chart");
    EXPECT_TRUE(UseSetup({{"cboTray", "Automatic"}}, "cmdOK"));  // it opens as it was left
    EXPECT_EQ(Print(), "A, A5, : Chart");
    EXPECT_TRUE(UseSetup({{"cboPrinter", "B"}}, "cmdOK"));
    EXPECT_EQ(Print(), "B, A4, : Chart");

    spooler.queues = {{"A"}};
    EXPECT_EQ(printer.Target(), PrintTarget::Printer);
    EXPECT_EQ(FailureOf([&] { Print(); }), "The printer \"B\" is not there.");
    // Without any printer documents are what the setup offers, and what is then chosen.
    spooler.queues.clear();
    EXPECT_TRUE(UseSetup({{"cboPaper", "Letter"}}, "cmdOK"));
    EXPECT_EQ(printer.Target(), PrintTarget::Documents);
}

TEST_F(PrinterTest, TheSetupTakesNoPrinterThatCannotBeAskedOrWasNotChosen) {
    spooler.queues = {{"A"}, {"broken"}};
    PrinterSetupDialog dialog(spooler, spooler.queues, {}, nullptr);
    Activate(dialog);
    const auto& ok = Find<QPushButton>(dialog, "cmdOK");
    EXPECT_FALSE(ok.isEnabled()) << "of several without a default none is proposed";
    for (const auto& [queue, taken] : {std::pair("A", true), {"broken", false}, {"A", true}}) {
        Find<QComboBox>(dialog, "cboPrinter").setCurrentText(QString::fromLatin1(queue));
        for (const auto* control : {"cmdOK", "cboPaper", "cboTray"})
            EXPECT_EQ(Find(dialog, control).isEnabled(), taken) << queue << " " << control;
        EXPECT_EQ(Find<QLabel>(dialog, "lblTrouble").isVisible(), !taken) << queue;
    }
}

TEST_F(PrinterTest, APageThatTheSpoolerRefusesIsOver) {
    spooler.queues = {{"A"}};
    spooler.refusal = "not accepting jobs";
    EXPECT_EQ(FailureOf([&] { Print(); }), "not accepting jobs");
    spooler.refusal.clear();
    EXPECT_EQ(FailureOf([&] { printer.EndDocument(); }), "No page is being printed.");
    EXPECT_EQ(Print(), "A, A4, : Chart");
}

TEST(CupsPrintSystemTest, WithoutASpoolerThereIsNoPrinter) {
    qputenv("CUPS_SERVER", "/nowhere/cups.sock");
    CupsPrintSystem spooler;
    EXPECT_TRUE(spooler.Queues().empty());
    EXPECT_EQ(FailureOf([&] { spooler.Media("A"); }), "The print system does not answer.");
    const PrintOrder order{"A", "Chart", {}, ""};
    EXPECT_EQ(FailureOf([&] { spooler.Send(order, ""); }), "The print system does not answer.");
}

}  // namespace rv52::test
