#include "platform/qt/Twips.h"
#include "support/IdleLine.h"
#include "support/ShownTable.h"
#include "support/TestSession.h"
#include "table/NewTableDialog.h"

#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QSlider>
#include <QStyle>
#include <QTest>
#include <QWheelEvent>

#include <gtest/gtest.h>

namespace rv52 {
namespace {

class NewTableDialogTest : public testing::Test {
 protected:
    void Open(const char* type) {
        test_.prompts.ExpectText({"Enter table type (Race or EX)", "Create New Advance Table", "Race"}, type);
        ASSERT_TRUE(OpenNewTable(session_, newTable_));
        dialog_ = std::make_unique<NewTableDialog>(session_, newTable_, [](const auto& event) { event(); });
        dialog_->show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(dialog_.get()));
    }

    template <class Widget = QWidget>
    Widget& Find(const char* name) const {
        return *dialog_->findChild<Widget*>(QString::fromLatin1(name));
    }
    QSlider& Timing() const { return Find<QSlider>("sldInitTiming"); }
    QSlider& Slope() const { return Find<QSlider>("sldAdvSlope"); }
    QString Text(const char* label) const { return Find<QLabel>(label).text(); }
    void ExpectTiming(int setting) const {
        EXPECT_EQ(Timing().value(), 9 - setting);
        EXPECT_EQ(Timing().sliderPosition(), 9 - setting);
        EXPECT_EQ(newTable_.InitTiming, setting);
        EXPECT_EQ(Text("lblInitTimingVal"), QString::number(setting));
    }

    static void Key(Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); }
    static void Wheel(QSlider& slider, int notches) {
        const QPointF place = slider.rect().center();
        QWheelEvent turn(place, slider.mapToGlobal(place), {}, {0, 120 * notches}, Qt::NoButton,
                         Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&slider, &turn);
    }
    static QPoint Handle(const QSlider& slider) {
        const int way = QStyle::sliderPositionFromValue(0, slider.maximum(), slider.sliderPosition(),
                                                        slider.height() - 20);
        return {slider.width() / 2, 10 + way};
    }

    test::IdleLine line_;
    test::TestSession test_{line_};
    Session& session_ = test_.session;
    NewTable newTable_;
    std::unique_ptr<NewTableDialog> dialog_;
};

TEST_F(NewTableDialogTest, StandsWhereItIsDrawn) {
    Open("Race");
    for (const auto& [name, twips] : {std::pair("fraInitTiming", Rectangle{360, 600, 855, 2295}),
                                      std::pair("sldAdvSlope", Rectangle{240, 600, 495, 1575}),
                                      std::pair("cmdOK", Rectangle{1920, 3120, 1095, 495})})
        EXPECT_EQ(Find(name).geometry(), ToPixels(twips)) << name;
    EXPECT_EQ(dialog_->size(), QSize(3780 / 15, 3825 / 15));
    EXPECT_EQ(dialog_->windowTitle(), QStringLiteral("Corvane RV52 - New Table"));
    const auto offCentre = dialog_->frameGeometry().center() - dialog_->screen()->geometry().center();
    EXPECT_LE(offCentre.manhattanLength(), 2);

    for (const auto* name : {"lblInitTmg", "lblAdvSlp"}) {
        const auto& label = Find<QLabel>(name);
        EXPECT_LE(label.heightForWidth(label.width()), label.height()) << name << " is clipped";
    }
}

TEST_F(NewTableDialogTest, KeysAloneMakeATable) {
    Open("Race");
    ExpectTiming(0);
    ASSERT_EQ(QApplication::focusWidget(), &Timing());
    for (const auto& [key, setting] :
         {std::pair(Qt::Key_Up, 1), std::pair(Qt::Key_PageUp, 2), std::pair(Qt::Key_Down, 1),
          std::pair(Qt::Key_Home, 9), std::pair(Qt::Key_Up, 9)}) {
        Key(key);
        ExpectTiming(setting);
    }
    Key(Qt::Key_Tab);
    Key(Qt::Key_Up);
    EXPECT_EQ(newTable_.AdvSlope, 1);
    EXPECT_EQ(Text("lblAdvSlopeVal"), QStringLiteral("1"));
    EXPECT_FALSE(session_.state.TableShown) << "sliders alone replace nothing";
    Key(Qt::Key_Tab);
    Key(Qt::Key_Space);
    EXPECT_TRUE(session_.state.TableShown);
    EXPECT_TRUE(dialog_->isVisible());
    Key(Qt::Key_Tab);
    ASSERT_EQ(QApplication::focusWidget(), &Find("cmdOK"));
    Key(Qt::Key_Space);
    EXPECT_FALSE(dialog_->isVisible());
}

TEST_F(NewTableDialogTest, EnterIsOkAndEscapeIsTheCloseBox) {
    for (const auto& [key, made] : {std::pair(Qt::Key_Escape, false), std::pair(Qt::Key_Return, true)}) {
        Open("EX");
        Key(key);
        EXPECT_FALSE(dialog_->isVisible());
        EXPECT_EQ(session_.state.TableShown, made);
    }
}

TEST_F(NewTableDialogTest, TheMouseMovesTheSettings) {
    Open("Race");
    for (const auto& [notches, setting] : {std::pair(1, 1), std::pair(-1, 0)}) {
        Wheel(Timing(), notches);
        ExpectTiming(setting);
    }
    const auto from = Handle(Slope());
    QTest::mousePress(&Slope(), Qt::LeftButton, {}, from);
    QTest::mouseMove(&Slope(), {from.x(), 0});
    QTest::mouseRelease(&Slope(), Qt::LeftButton, {}, {from.x(), 0});
    EXPECT_EQ(newTable_.AdvSlope, 9);
    EXPECT_LT(Handle(Slope()).y(), from.y());
    QTest::mouseClick(&Find("cmdOK"), Qt::LeftButton);
    EXPECT_TRUE(session_.state.TableShown && !dialog_->isVisible());
}

TEST_F(NewTableDialogTest, AnExTablesTimingStopsAtFive) {
    Open("EX");
    const std::function<void()> ways[] = {
        [] { Key(Qt::Key_Home); },
        [this] {
            for (int notches = 0; notches < 7; ++notches)
                Wheel(Timing(), 1);
        },
        [this] {
            const auto bottom = Handle(Timing());
            QTest::mousePress(&Timing(), Qt::LeftButton, {}, bottom);
            for (int y = bottom.y(); y >= 0; y -= 5) {
                QTest::mouseMove(&Timing(), {bottom.x(), y});
                EXPECT_GE(Timing().sliderPosition(), 4) << "felt while dragging";
            }
            QTest::mouseRelease(&Timing(), Qt::LeftButton, {}, {bottom.x(), 0});
        },
        [this] {
            QTest::mouseClick(&Timing(), Qt::LeftButton, {}, {Handle(Timing()).x(), 2});
        }};
    for (const auto& raise : ways) {
        raise();
        ExpectTiming(5);
        if (&raise != &ways[2]) Timing().setValue(9);
    }
    Slope().setValue(0);
    EXPECT_EQ(newTable_.AdvSlope, 9) << "the slope has no stop";
}

}  // namespace
}  // namespace rv52
