#include "UserActions.h"
#include "module/ui/ModParamsDialog.h"

#include <QAccessible>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
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
    // What a screen reader says of the slider.
    std::string Spoken(const std::string& setting) const {
        return FromQt(QAccessible::queryAccessibleInterface(&Slider(setting))->text(QAccessible::Value));
    }
    QLineEdit& Vss() const { return Find<QLineEdit>(*dialog, "txtVSSFreq"); }
    void TypeVss(const char* text) const {
        Vss().setFocus();
        Vss().selectAll();
        Type(text);
    }

    ModuleParameters& parameters = session.state.ModuleParameters;
    std::unique_ptr<ModParamsDialog> dialog;
};

TEST_F(ModParamsTest, OpensOnTheParametersAndIsUsableByKeyboardAlone) {
    parameters = {.InitialTiming = -3,
                  .RearOffset = 4,
                  .CrankRevs = 2,
                  .RPMLimit = 5750,
                  .VSSFreq = 1000,
                  .FixedLimFlag = true,
                  .SelEEPROMTblFlag = false,
                  .FixedInitialTmgFlag = true,
                  .TachEnableFlag = true};
    const auto before = parameters;
    Open();
    for (const auto& [setting, position, text] : {std::tuple("RPMLimit", 72, "5750"),
                                                  {"InitTiming", 8, "-3"},
                                                  {"RearOffset", 1, "4"},
                                                  {"CrankRevs", 1, "2"}}) {
        EXPECT_EQ(Slider(setting).value(), position) << setting;
        EXPECT_EQ(Label(setting), text);
        EXPECT_EQ(Spoken(setting), text) << "also of 5750, which is between two positions";
    }
    EXPECT_TRUE(Find<QCheckBox>(*dialog, "chkTachEnable").isChecked());
    EXPECT_EQ(Vss().text(), QStringLiteral("1000"));
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
                                              {"RPMLimit", Qt::Key_End, "3000"},
                                              {"CrankRevs", Qt::Key_PageUp, "2"},
                                              {"CrankRevs", Qt::Key_Up, "3"},
                                              {"RearOffset", Qt::Key_PageDown, "-2"},
                                              {"RearOffset", Qt::Key_Down, "-3"}}) {
        Slider(setting).setFocus();
        Key(key);
        EXPECT_EQ(Label(setting), shown);
        EXPECT_EQ(Spoken(setting), shown);
    }
    EXPECT_EQ(std::tuple(parameters.RPMLimit, parameters.CrankRevs, parameters.RearOffset),
              std::tuple(3000, 3, -3));
}

TEST_F(ModParamsTest, HoldsAnExTablesTimingAtZero) {
    session.state.TableType = TableType::EX;
    parameters.FixedInitialTmgFlag = true;
    parameters.InitialTiming = 3;
    Open();
    EXPECT_FALSE(Part("fraRearOffset").isVisible());
    EXPECT_EQ(Label("InitTiming"), "3") << "from a file, until the slider moves";
    Slider("InitTiming").setFocus();
    for (const auto& [key, timing] : {std::pair(Qt::Key_Down, 0), {Qt::Key_Up, 0}, {Qt::Key_Down, -1}}) {
        Key(key);
        EXPECT_EQ(parameters.InitialTiming, timing);
        EXPECT_EQ(Label("InitTiming"), std::to_string(timing));
        EXPECT_EQ(Slider("InitTiming").value(), 5 - timing);
    }
}

TEST_F(ModParamsTest, FramesComeAndGoWithTheirChecks) {
    Open();
    const auto ok = Part("cmdOK").geometry();
    EXPECT_TRUE(Part("fraRearOffset").isVisible());
    for (const auto& [setting, neutral] : {std::pair(std::string("RPMLimit"), 99), {"InitTiming", 5}}) {
        const auto text = Label(setting);
        for (const bool shown : {false, true, false}) {
            EXPECT_EQ(Part("fra" + setting).isVisible(), shown);
            EXPECT_EQ(Slider(setting).value(), neutral);
            EXPECT_EQ(Label(setting), text);
            EXPECT_EQ(Part("cmdOK").geometry(), ok);
            if (shown) Slider(setting).setValue(neutral - 3);
            EXPECT_NE(Label(setting) == text, shown);
            Click(Part("chkFixed" + setting));
        }
        Click(Part("chkFixed" + setting));
    }
    EXPECT_EQ(parameters, ModuleParameters{});
}

TEST_F(ModParamsTest, WarnsOfFlashTablesByMouseAndKeys) {
    Open();
    for (const bool byMouse : {true, false}) {
        test.prompts.ExpectNotice(
            "Selecting this option disables any advance table that you upload to EEPROM.",
            "Advance Table Options");
        byMouse ? Click(Part("optFLASHAdvTable")) : Key(Qt::Key_Down);
        EXPECT_FALSE(parameters.SelEEPROMTblFlag);
        Key(Qt::Key_Up);
        EXPECT_TRUE(parameters.SelEEPROMTblFlag);
    }
}

// Each way out of the VSS box asks once, but for Escape, which applies nothing.
TEST_F(ModParamsTest, ValidatesTheVssFrequencyHoweverTheFocusLeaves) {
    // A box in the middle of a click would take the button's release away from what was clicked.
    test.prompts.whileOpen = [] { EXPECT_EQ(QApplication::mouseButtons(), Qt::NoButton); };
    const struct {
        Act leave;
        bool closes;
    } ways[] = {{[] { Key(Qt::Key_Tab); }, false},
                {[] { Key(Qt::Key_Tab, Qt::ShiftModifier); }, false},
                {[this] { Click(Part("chkTachEnable")); }, false},
                {[this] { Click(Part("cmdOK")); }, true},
                {[] { Key(Qt::Key_Return); }, true}};
    for (const auto& [leave, closes] : ways) {
        Open();
        TypeVss("abc");
        test.prompts.ExpectNotice("Value must be greater than or equal to 910", "VSS Frequency");
        leave();
        EXPECT_TRUE(test.prompts.Done());
        EXPECT_EQ(parameters.VSSFreq, 910);
        EXPECT_EQ(Vss().text(), QStringLiteral("910"));
        EXPECT_EQ(dialog->isVisible(), !closes);
        for (const bool escape : {true, false}) {
            Open();
            TypeVss("1234");
            escape ? Key(Qt::Key_Escape) : static_cast<void>(dialog->close());
        }
        dialog.reset();
        EXPECT_EQ(parameters.VSSFreq, 910);
    }
    EXPECT_TRUE(parameters.TachEnableFlag) << "the click that left the box has done its own work too";
}

TEST_F(ModParamsTest, TheVssMessageComesBeforeWhatTheClickThatLeftTheBoxAsks) {
    Open();
    TypeVss("abc");
    test.prompts.ExpectNotice("Value must be greater than or equal to 910", "VSS Frequency");
    test.prompts.ExpectNotice("Selecting this option disables any advance table that you upload to EEPROM.",
                              "Advance Table Options");
    Click(Part("optFLASHAdvTable"));
    EXPECT_TRUE(test.prompts.Done());
    EXPECT_EQ(parameters.VSSFreq, 910);
    EXPECT_FALSE(parameters.SelEEPROMTblFlag);
}

TEST_F(ModParamsTest, AKeyThatClosesTheDialogWithTheButtonStillDownLosesNoTypedValue) {
    std::int16_t typed = 1000;
    for (const auto key : {Qt::Key_Return, Qt::Key_Escape}) {
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
    const auto font = QApplication::font();
    for (const double points : {8.25, 11.0, 24.0}) {
        auto larger = font;
        larger.setPointSizeF(points);
        QApplication::setFont(larger);
        Open();
        if (points < 9) {
            EXPECT_EQ(dialog->size(), QSize(473, 512));
            EXPECT_EQ(Part("fraOptions").size(), QSize(337, 177));
            EXPECT_EQ(Part("fraRPMLimit").size(), QSize(97, 401));
        }
        for (const auto* part : dialog->findChildren<QWidget*>())
            EXPECT_TRUE(part->minimumSizeHint().boundedTo(part->size()) == part->minimumSizeHint() &&
                        part->parentWidget()->rect().contains(part->geometry()))
                << FromQt(part->objectName()) << " at " << points;
    }
    QApplication::setFont(font);
}

}  // namespace rv52::test
