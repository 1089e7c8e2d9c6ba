#include "UserActions.h"
#include "platform/qt/Twips.h"
#include "table/ui/NewTableDialog.h"

#include <QLabel>
#include <QScreen>
#include <QSlider>
#include <QStyle>

namespace rv52::test {

class NewTableTest : public WidgetTest {
 protected:
    void Open(const char* type) {
        test.prompts.ExpectText({"Enter table type (Race or EX)", "Create New Advance Table", "Race"}, type);
        ASSERT_TRUE(OpenNewTable(session, newTable));
        dialog = std::make_unique<NewTableDialog>(session, newTable, [](const auto& event) { event(); });
        Activate(*dialog);
        EXPECT_TRUE(dialog->testAttribute(Qt::WA_KeyboardFocusChange)) << "styles show the focus";
    }
    QWidget& Part(const char* name) { return Find(*dialog, name); }
    QSlider& Timing() { return Find<QSlider>(*dialog, "sldInitTiming"); }
    QSlider& Slope() { return Find<QSlider>(*dialog, "sldAdvSlope"); }
    void ExpectTiming(int setting) {
        EXPECT_EQ(Timing().value(), 9 - setting);
        EXPECT_EQ(Timing().sliderPosition(), 9 - setting);
        EXPECT_EQ(newTable.InitTiming, setting);
        EXPECT_EQ(Find<QLabel>(*dialog, "lblInitTimingVal").text(), QString::number(setting));
    }
    // By its handle, to the top.
    void DragUp(QSlider& slider) {
        const int way = QStyle::sliderPositionFromValue(0, slider.maximum(), slider.sliderPosition(),
                                                        slider.height() - 20);
        QPoint at(slider.width() / 2, 10 + way);
        QTest::mousePress(&slider, Qt::LeftButton, {}, at);
        for (; at.y() >= 0; at.ry() -= 5) {
            MoveHeld(slider, at);
            EXPECT_TRUE(&slider == &Slope() || session.state.TableType == TableType::RACE ||
                        slider.sliderPosition() >= 4)
                << "an EX table's timing stops while it is dragged";
        }
        QTest::mouseRelease(&slider, Qt::LeftButton, {}, at);
    }

    NewTable newTable;
    std::unique_ptr<NewTableDialog> dialog;
};

TEST_F(NewTableTest, KeysAloneMakeATable) {
    Open("Race");
    EXPECT_EQ(dialog->size(), QSize(3780 / 15, 3825 / 15));
    EXPECT_EQ(Part("fraInitTiming").geometry(), ToPixels({360, 600, 855, 2295}));
    for (const auto* name : {"lblInitTmg", "lblAdvSlp"})
        EXPECT_LE(Part(name).heightForWidth(Part(name).width()), Part(name).height()) << "clipped";
    const auto offCentre = dialog->frameGeometry().center() - dialog->screen()->geometry().center();
    EXPECT_LE(offCentre.manhattanLength(), 2);

    ExpectTiming(0);
    for (const auto& [key, setting] :
         {std::pair(Qt::Key_Up, 1), {Qt::Key_PageUp, 2}, {Qt::Key_Down, 1}, {Qt::Key_Home, 9}}) {
        Key(key);
        ExpectTiming(setting);
    }
    Key(Qt::Key_Tab);
    Key(Qt::Key_Up);
    EXPECT_EQ(newTable.AdvSlope, 1);
    EXPECT_EQ(Find<QLabel>(*dialog, "lblAdvSlopeVal").text(), QStringLiteral("1"));
    EXPECT_FALSE(session.state.TableShown) << "sliders alone replace nothing";
    Key(Qt::Key_Tab);
    Key(Qt::Key_Space);
    EXPECT_TRUE(session.state.TableShown && dialog->isVisible());
    Key(Qt::Key_Tab);
    Key(Qt::Key_Space);
    EXPECT_FALSE(dialog->isVisible());
}

TEST_F(NewTableTest, EnterIsOkAndEscapeIsTheCloseBox) {
    for (const auto& [key, made] : {std::pair(Qt::Key_Escape, false), {Qt::Key_Return, true}}) {
        Open("EX");
        Key(key);
        EXPECT_FALSE(dialog->isVisible());
        EXPECT_EQ(session.state.TableShown, made);
    }
}

TEST_F(NewTableTest, AnExTablesTimingStopsAtFive) {
    for (const auto& [type, highest] : {std::pair("Race", 9), {"EX", 5}}) {
        Open(type);
        for (int notches = 0; notches < 9; ++notches)
            Wheel(Timing(), {20, 20}, 1);
        ExpectTiming(highest);
        Wheel(Timing(), {20, 20}, -1);
        ExpectTiming(highest - 1);
        DragUp(Timing());
        ExpectTiming(highest);
        Key(Qt::Key_End);
        Key(Qt::Key_Home);
        ExpectTiming(highest);
        DragUp(Slope());
        EXPECT_EQ(newTable.AdvSlope, 9) << "the slope has no stop";
    }
}

}  // namespace rv52::test
