#include "UserActions.h"
#include "module/ui/ModParamsDialog.h"

#include <QLabel>
#include <QLineEdit>
#include <QSlider>

namespace rv52::test {

class ModParamsTest : public WidgetTest {
 protected:
    void Open() {
        dialog = std::make_unique<ModParamsDialog>(session, [](const auto& event) { event(); });
        Activate(*dialog);
    }
    QWidget& Part(const std::string& name) const { return Find(*dialog, name); }
    // Of a setting: "RPMLimit".
    QSlider& Slider(const std::string& setting) const { return Find<QSlider>(*dialog, "sld" + setting); }
    std::string Label(const std::string& setting) const {
        return FromQt(Find<QLabel>(*dialog, "lbl" + setting + "Val").text());
    }
    QLineEdit& Vss() const { return Find<QLineEdit>(*dialog, "txtVSSFreq"); }
    void TypeVss(const char* text) const {
        Vss().setFocus();
        Vss().selectAll();
        Type(text);
    }
    void ExpectVssMessage() {
        test.prompts.ExpectNotice("Value must be greater than or equal to 910", "VSS Frequency");
    }

    ModuleParameters& parameters = session.state.ModuleParameters;
    std::unique_ptr<ModParamsDialog> dialog;
};

TEST_F(ModParamsTest, OpensOnTheParametersAndIsUsableByKeyboardAlone) {
    parameters.FixedLimFlag = parameters.FixedInitialTmgFlag = parameters.TachEnableFlag = true;
    parameters.SelEEPROMTblFlag = false;
    parameters.RPMLimit = 5750;
    parameters.InitialTiming = -3;
    const auto before = parameters;
    Open();
    EXPECT_EQ(Slider("RPMLimit").value(), 72);
    EXPECT_EQ(Label("RPMLimit"), "5750") << "also between two positions";
    EXPECT_TRUE(Find<QAbstractButton>(*dialog, "chkTachEnable").isChecked());
    for (const auto* stop :
         {"optEEPROMAdvTable", "chkFixedInitTiming", "chkFixedRPMLimit", "sldCrankRevs", "sldRearOffset",
          "sldInitTiming", "txtVSSFreq", "chkTachEnable", "sldRPMLimit", "cmdOK"}) {
        EXPECT_EQ(FromQt(QApplication::focusWidget()->objectName()), stop);
        Key(Qt::Key_Tab);
    }
    Click(Part("cmdOK"));
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(parameters, before);
}

TEST_F(ModParamsTest, SlidersRaiseTheirValueUpwards) {
    parameters.FixedLimFlag = true;
    parameters.RPMLimit = 5750;
    Open();
    for (const auto& [setting, key, shown] : {std::tuple("RPMLimit", Qt::Key_Up, "5800"),
                                              {"RPMLimit", Qt::Key_PageUp, "6800"},
                                              {"RPMLimit", Qt::Key_Home, "9900"},
                                              {"CrankRevs", Qt::Key_PageUp, "2"},
                                              {"RearOffset", Qt::Key_Down, "-1"}}) {
        Slider(setting).setFocus();
        Key(key);
        EXPECT_EQ(Label(setting), shown);
    }
    EXPECT_EQ(std::tuple(parameters.RPMLimit, parameters.CrankRevs, parameters.RearOffset),
              std::tuple(9900, 2, -1));
}

TEST_F(ModParamsTest, HoldsAnExTablesTimingAtZero) {
    session.state.TableType = TableType::EX;
    parameters.FixedInitialTmgFlag = true;
    parameters.InitialTiming = 3;  // from a file, until the slider moves
    Open();
    EXPECT_FALSE(Part("fraRearOffset").isVisible());
    Slider("InitTiming").setFocus();
    for (const auto& [key, timing] : {std::pair(Qt::Key_Down, 0), {Qt::Key_Up, 0}, {Qt::Key_Down, -1}}) {
        Key(key);
        EXPECT_EQ(Label("InitTiming"), std::to_string(timing));
        EXPECT_EQ(Slider("InitTiming").value(), 5 - timing);
    }
}

TEST_F(ModParamsTest, FramesComeAndGoWithTheirChecks) {
    Open();
    EXPECT_TRUE(Part("fraRearOffset").isVisible());
    for (const auto& [setting, neutral] : {std::pair(std::string("RPMLimit"), 99), {"InitTiming", 5}}) {
        SCOPED_TRACE(setting);
        const auto text = Label(setting);
        for (const bool shown : {false, true, false}) {
            EXPECT_EQ(Part("fra" + setting).isVisible(), shown);
            EXPECT_EQ(Slider(setting).value(), neutral);
            EXPECT_EQ(Label(setting), text);
            if (shown) Slider(setting).setValue(neutral - 3);
            EXPECT_NE(Label(setting) == text, shown);
            Click(Part("chkFixed" + setting));
        }
        Click(Part("chkFixed" + setting));
    }
    EXPECT_EQ(parameters, ModuleParameters{});
}

// Each way out of the VSS box asks once, but for Escape and the close box, which apply nothing.
TEST_F(ModParamsTest, ValidatesTheVssFrequencyHoweverTheFocusLeaves) {
    // A box in the middle of a click would take the button's release away from what was clicked.
    test.prompts.whileOpen = [] { EXPECT_EQ(QApplication::mouseButtons(), Qt::NoButton); };
    const std::tuple<const char*, bool, Act> ways[] = {
        {"Tab", false, [] { Key(Qt::Key_Tab); }},
        {"Shift+Tab", false, [] { Key(Qt::Key_Tab, Qt::ShiftModifier); }},
        {"a click", false, [this] { Click(Part("chkTachEnable")); }},
        {"OK", true, [this] { Click(Part("cmdOK")); }},
        {"Enter", true, [] { Key(Qt::Key_Return); }}};
    for (const auto& [way, closes, leave] : ways) {
        SCOPED_TRACE(way);
        parameters.VSSFreq = 1000;
        Open();
        TypeVss("abc");
        ExpectVssMessage();
        leave();
        EXPECT_TRUE(test.prompts.Done());
        EXPECT_EQ(parameters.VSSFreq, 910);
        EXPECT_EQ(Vss().text(), QStringLiteral("910"));
        EXPECT_EQ(dialog->isVisible(), !closes);
    }
    EXPECT_TRUE(parameters.TachEnableFlag) << "the click that left the box has done its own work too";
    for (const bool escape : {true, false}) {
        Open();
        TypeVss("1234");
        escape ? Key(Qt::Key_Escape) : static_cast<void>(dialog->close());
        dialog.reset();
        EXPECT_EQ(parameters.VSSFreq, 910) << escape;
    }
}

TEST_F(ModParamsTest, TheVssMessageComesBeforeWhatTheClickThatLeftTheBoxAsks) {
    Open();
    TypeVss("abc");
    ExpectVssMessage();
    test.prompts.ExpectNotice("Selecting this option disables any advance table that you upload to EEPROM.",
                              "Advance Table Options");
    Click(Part("optFLASHAdvTable"));
    EXPECT_TRUE(test.prompts.Done());
    EXPECT_EQ(parameters.VSSFreq, 910);
    EXPECT_FALSE(parameters.SelEEPROMTblFlag);
    Key(Qt::Key_Up);
    EXPECT_TRUE(parameters.SelEEPROMTblFlag);
}

TEST_F(ModParamsTest, AKeyThatClosesTheDialogWithTheButtonStillDownLosesNoTypedValue) {
    std::int16_t typed = 1000;
    for (const auto key : {Qt::Key_Return, Qt::Key_Escape}) {
        SCOPED_TRACE(key);
        Open();
        TypeVss(std::to_string(++typed).c_str());
        auto& slider = Slider("CrankRevs");
        const QPoint at = slider.mapTo(dialog.get(), slider.rect().center());
        QTest::mousePress(dialog->windowHandle(), Qt::LeftButton, {}, at);
        EXPECT_FALSE(Vss().hasFocus());
        Key(key);
        EXPECT_FALSE(dialog->isVisible());
        EXPECT_EQ(parameters.VSSFreq, typed);
        QTest::mouseRelease(dialog->windowHandle(), Qt::LeftButton, {}, at);
        QTest::qWait(0);
        EXPECT_EQ(parameters.VSSFreq, typed);
    }
}

TEST_F(ModParamsTest, KeepsItsDesignSizeAndCutsNothingAtLargerFonts) {
    parameters.FixedLimFlag = parameters.FixedInitialTmgFlag = true;
    auto font = QApplication::font();
    const auto before = font;
    for (const double points : {8.25, 11.0, 24.0}) {
        font.setPointSizeF(points);
        QApplication::setFont(font);
        Open();
        if (points < 9) {
            EXPECT_EQ(dialog->size(), QSize(473, 512));
        }
        for (const auto* part : dialog->findChildren<QWidget*>())
            EXPECT_TRUE(part->minimumSizeHint().boundedTo(part->size()) == part->minimumSizeHint() &&
                        part->parentWidget()->rect().contains(part->geometry()))
                << FromQt(part->objectName()) << " at " << points;
    }
    QApplication::setFont(before);
}

}  // namespace rv52::test
