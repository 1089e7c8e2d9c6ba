#include "module/Report.h"
#include "platform/Failure.h"
#include "platform/qt/QtPrinter.h"
#include "platform/qt/Text.h"
#include "support/IdleLine.h"
#include "support/TestSession.h"
#include "table/TableDisplay.h"

#include <QApplication>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFontInfo>
#include <QFontMetricsF>
#include <QLocale>
#include <QPainter>
#include <QPdfWriter>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

namespace rv52 {
namespace {

// From column 10 on, 17 fields of 8.
constexpr int kLastColumn = 9 + 17 * 8;

TEST(PrintedTextTest, FitsBothPapersInEveryFontThatMayStandIn) {
    for (const auto* family : {"Courier New", "Liberation Mono", "DejaVu Sans Mono", "no such font"}) {
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
        printer_.SetChartDrawing([this](QPainter& painter, const QRectF& place) {
            chart_ = place;
            painter.drawRect(place);
        });
    }

    Failure FailureOf(const std::function<void()>& act) {
        try {
            act();
        } catch (const Failure& failure) {
            return failure;
        }
        return Failure("none");
    }

    test::MemoryFiles files_;
    QtPrinter printer_{files_};
    QRectF chart_;
};

TEST_F(PrinterTest, WritesADocumentOnceItIsWhole) {
    ASSERT_FALSE(printer_.Present());
    printer_.Begin({"Chart", "Courier New", 8, 500, "/docs/chart.pdf"});
    printer_.PrintLine({{10, "Emberline"}, {40, "value"}});
    const auto page = printer_.Page();
    printer_.DrawChart(ChartRectangle(page));
    EXPECT_TRUE(files_.contents.empty());

    files_.failWrites = true;
    EXPECT_STREQ(FailureOf([&] { printer_.EndDocument(); }).what(), "disk full");
    files_.failWrites = false;
    printer_.EndDocument();
    const auto& document = files_.contents.at("/docs/chart.pdf");
    EXPECT_EQ(document.substr(0, 5), "%PDF-");
    EXPECT_NE(document.find("%%EOF"), std::string::npos);
    EXPECT_EQ(document.find("/Subtype /Image"), std::string::npos);
    EXPECT_GT(page.width, page.height);
    EXPECT_NEAR(chart_.top() * page.twipsPerPixelY, 1000, page.twipsPerPixelY);
    EXPECT_NEAR(chart_.bottom() * page.twipsPerPixelY, page.height, page.twipsPerPixelY);
}

TEST_F(PrinterTest, DiscardsAnUnfinishedDocument) {
    printer_.Begin({"Chart", "Courier New", 8, 500, "/docs/a.pdf"});
    printer_.PrintLine({});
    printer_.Begin({"Table", "Courier New", 8, 2000, "/docs/b.pdf"});
    printer_.Discard();
    printer_.Discard();
    EXPECT_TRUE(files_.contents.empty());
    EXPECT_STREQ(FailureOf([&] { printer_.PrintLine({}); }).what(), "No page is being printed.");
    EXPECT_STREQ(FailureOf([&] { printer_.EndDocument(); }).what(), "No page is being printed.");
}

TEST_F(PrinterTest, TellsTheTimeAsTheDesktopDoes) {
    const auto date = QLocale::system().toString(QDate::currentDate(), QLocale::ShortFormat);
    // Hours, minutes and seconds, and no time zone.
    const QRegularExpression expected(
        QStringLiteral("^%1 \\d{1,2}:\\d\\d:\\d\\d(\\s?[AP]M)?$").arg(QRegularExpression::escape(date)));
    EXPECT_TRUE(expected.match(ToQt(printer_.DateAndTime())).hasMatch()) << printer_.DateAndTime();
}

TEST_F(PrinterTest, KeepsThePaperChosenInTheSetup) {
    const auto choose = [&](const QString& paper, QDialogButtonBox::StandardButton button) {
        QTimer::singleShot(0, qApp, [=] {
            auto* dialog = QApplication::activeModalWidget();
            ASSERT_NE(dialog, nullptr);
            EXPECT_EQ(dialog->objectName(), QStringLiteral("PrinterSetup"));
            EXPECT_EQ(dialog->windowTitle(), QStringLiteral("Printer Setup"));
            for (auto* combo : dialog->findChildren<QComboBox*>())
                if (const auto at = combo->findText(paper); at >= 0) combo->setCurrentIndex(at);
            QTest::mouseClick(dialog->findChild<QDialogButtonBox*>()->button(button), Qt::LeftButton);
        });
        printer_.SetUp();
        printer_.Begin({"Chart", "Courier New", 8, 500, "/docs/a.pdf"});
        const auto width = printer_.Page().width;
        printer_.Discard();
        return width;
    };
    for (const auto& [paper, button, kept] :
         {std::tuple(QPageSize::A5, QDialogButtonBox::Ok, QPageSize::A5),
          std::tuple(QPageSize::A4, QDialogButtonBox::Cancel, QPageSize::A5),
          std::tuple(QPageSize::A4, QDialogButtonBox::Ok, QPageSize::A4)})
        EXPECT_NEAR(choose(QPageSize::name(paper), button),
                    DocumentLayout(QPageSize(kept)).paintRectPoints().width() * 20.0, 40);
}

}  // namespace
}  // namespace rv52
