#include "UserActions.h"
#include "table/ui/NewTableDialog.h"

#include <QLabel>
#include <QScreen>
#include <QSlider>

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
    QSlider& Timing() { return Find<QSlider>(*dialog, "sldInitTiming"); }
    void ExpectTiming(int setting) {
        EXPECT_EQ(Timing().sliderPosition(), 9 - setting);
        EXPECT_EQ(newTable.InitTiming, setting);
        EXPECT_EQ(Find<QLabel>(*dialog, "lblInitTimingVal").text(), QString::number(setting));
    }

    NewTable newTable;
    std::unique_ptr<NewTableDialog> dialog;
};

TEST_F(NewTableTest, KeysAloneMakeATable) {
    Open("Race");
    for (const auto* name : {"lblInitTmg", "lblAdvSlp"}) {
        const auto& label = Find(*dialog, name);
        EXPECT_LE(label.heightForWidth(label.width()), label.height()) << name << " is clipped";
    }
    const auto offCentre = dialog->frameGeometry().center() - dialog->screen()->geometry().center();
    EXPECT_LE(offCentre.manhattanLength(), 2);

    ExpectTiming(0);
    for (const auto key : {Qt::Key_Up, Qt::Key_PageUp, Qt::Key_Down, Qt::Key_PageUp})
        Key(key);
    ExpectTiming(2);
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
        EXPECT_FALSE(dialog->isVisible()) << key;
        EXPECT_EQ(session.state.TableShown, made);
    }
}

TEST_F(NewTableTest, AnExTablesTimingStopsAtFive) {
    for (const auto& [type, highest] : {std::pair("Race", 9), {"EX", 5}}) {
        SCOPED_TRACE(type);
        Open(type);
        // By the handle at the lowest setting, upwards as far as it goes.
        auto& slider = Timing();
        const QPoint handle(slider.width() / 2, slider.height() - 10);
        QTest::mousePress(&slider, Qt::LeftButton, {}, handle);
        for (int way = 0; way < slider.height(); way += 5)
            MoveHeld(slider, handle - QPoint(0, way));
        ExpectTiming(highest);
        QTest::mouseRelease(&slider, Qt::LeftButton, {}, {});
        ExpectTiming(highest);
        Wheel(slider, {20, 20}, -1);
        ExpectTiming(highest - 1);
        for (int notches = 0; notches < 2; ++notches)
            Wheel(slider, {20, 20}, 1);
        ExpectTiming(highest);
        Key(Qt::Key_Tab);
        Key(Qt::Key_Home);
        EXPECT_EQ(newTable.AdvSlope, 9) << "the slope has no stop";
    }
}

}  // namespace rv52::test
