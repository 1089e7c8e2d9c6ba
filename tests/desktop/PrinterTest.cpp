#include "Hands.h"
#include "module/Report.h"
#include "platform/qt/QtPrinter.h"
#include "support/FailureOf.h"

#include <QBuffer>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFontInfo>
#include <QLocale>
#include <QPainter>
#include <QPdfWriter>
#include <QTimer>

namespace rv52::test {

// From column 10 on, 17 fields of 8.
constexpr int kLastColumn = 9 + 17 * 8;

TEST(PrintedTextTest, FitsBothPapersInEveryFontThatMayStandIn) {
    for (const auto* family : {"Courier New", "DejaVu Sans Mono", "no such font"}) {
        const auto font = MonospacedFont(QString::fromLatin1(family), 8);
        EXPECT_TRUE(QFontInfo(font).fixedPitch()) << family;
        for (const auto paper : {QPageSize::A4, QPageSize::Letter}) {
            QBuffer buffer;
            buffer.open(QIODevice::WriteOnly);
            QPdfWriter writer(&buffer);
            writer.setPageLayout(DocumentLayout(QPageSize(paper)));
            const QFontMetricsF metrics(font, &writer);
            const double column = metrics.horizontalAdvance(QLatin1Char('0'));
            EXPECT_NEAR(column, 0.6 * 8 * writer.logicalDpiX() / 72, 0.05 * column) << family;
            // One width for all, and none lost to rounding over a whole line.
            EXPECT_NEAR(metrics.horizontalAdvance(QString(kLastColumn, QLatin1Char('M'))),
                        kLastColumn * column, 1);
            EXPECT_LT(kLastColumn * column, writer.width()) << family;
        }
    }
}

// A system without printers, as the test's own print system is.
class PrinterTest : public testing::Test {
 protected:
    PrinterTest() {
        qputenv("CUPS_SERVER", "/nowhere/cups.sock");
        printer.SetChartDrawing([this](QPainter& painter, const QRectF& place) {
            chart = place;
            painter.drawRect(place);
        });
    }
    void Begin(const char* path) { printer.Begin({"Chart", "Courier New", 8, 500, path}); }

    MemoryFiles files;
    QtPrinter printer{files};
    QRectF chart;
};

TEST_F(PrinterTest, WritesADocumentOnceItIsWholeOrNothing) {
    Begin("/docs/given up.pdf");
    Begin("/docs/chart.pdf");
    printer.PrintLine({{10, "Emberline"}, {40, "value"}});
    const auto page = printer.Page();
    printer.DrawChart(ChartRectangle(page));
    EXPECT_TRUE(files.contents.empty());
    files.failWrites = true;
    EXPECT_EQ(FailureOf([&] { printer.EndDocument(); }), "disk full");
    files.failWrites = false;
    printer.EndDocument();
    const auto& document = files.contents.at("/docs/chart.pdf");
    EXPECT_TRUE(document.starts_with("%PDF-") && document.find("%%EOF") != std::string::npos);
    EXPECT_EQ(document.find("/Subtype /Image"), std::string::npos) << "lines, not a picture of them";
    // Text stands in it letter by letter: column 10 is nine of them from the margin.
    const auto packed = QByteArray::fromStdString(document.substr(document.find("stream\n") + 7));
    const auto drawn = QString::fromLatin1(qUncompress(QByteArray("\0\1\0\0", 4) + packed));
    const QRegularExpression twoLetters(QStringLiteral("([\\d.]+) \\S+ Td <\\w+> Tj\n([\\d.]+) 0 Td"));
    const auto letters = twoLetters.match(drawn);
    EXPECT_NEAR(letters.captured(1).toDouble(), 9 * letters.captured(2).toDouble(), 0.1);
    EXPECT_TRUE(letters.hasMatch());
    EXPECT_GT(page.width, page.height);
    EXPECT_NEAR(chart.top() * page.twipsPerPixelY, 1000, page.twipsPerPixelY);
    EXPECT_NEAR(chart.bottom() * page.twipsPerPixelY, page.height, page.twipsPerPixelY);

    Begin("/docs/b.pdf");
    printer.Discard();
    EXPECT_EQ(files.contents.size(), 1U);
    for (const Act& act : {Act([&] { printer.PrintLine({}); }), Act([&] { printer.EndDocument(); })})
        EXPECT_EQ(FailureOf(act), "No page is being printed.");

    const auto date = QLocale::system().toString(QDate::currentDate(), QLocale::ShortFormat);
    // Hours, minutes and seconds, and no time zone.
    const QRegularExpression expected(
        QStringLiteral("^%1 \\d{1,2}:\\d\\d:\\d\\d(\\s?[AP]M)?$").arg(QRegularExpression::escape(date)));
    EXPECT_TRUE(expected.match(ToQt(printer.DateAndTime())).hasMatch()) << printer.DateAndTime();
}

TEST_F(PrinterTest, KeepsThePaperChosenInTheSetup) {
    for (const auto& [paper, button, kept] : {std::tuple(QPageSize::A5, QDialogButtonBox::Ok, QPageSize::A5),
                                              {QPageSize::A4, QDialogButtonBox::Cancel, QPageSize::A5},
                                              {QPageSize::A4, QDialogButtonBox::Ok, QPageSize::A4}}) {
        QTimer::singleShot(0, qApp, [name = QPageSize::name(paper), press = button] {
            auto* dialog = QApplication::activeModalWidget();
            ASSERT_EQ(FromQt(dialog->objectName() + dialog->windowTitle()), "PrinterSetupPrinter Setup");
            for (auto* combo : dialog->findChildren<QComboBox*>())
                if (const auto at = combo->findText(name); at >= 0) combo->setCurrentIndex(at);
            Click(*dialog->findChild<QDialogButtonBox*>()->button(press));
        });
        printer.SetUp();
        Begin("/docs/a.pdf");
        EXPECT_NEAR(printer.Page().width, DocumentLayout(QPageSize(kept)).paintRectPoints().width() * 20.0,
                    40);
    }
}

}  // namespace rv52::test
