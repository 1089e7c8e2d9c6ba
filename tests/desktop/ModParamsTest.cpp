#include "module/ModParamsDialog.h"
#include "support/IdleLine.h"
#include "support/TestSession.h"

#include <QApplication>
#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QTest>

#include <gtest/gtest.h>
#include <memory>
#include <tuple>

namespace rv52::test {
namespace {

class ModParamsDialogTest : public testing::Test {
 protected:
    void Open() {
        dialog = std::make_unique<ModParamsDialog>(session, [](const auto& event) { event(); });
        dialog->show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(dialog.get()));
    }

    template <class T>
    T* Find(const char* name) const {
        auto* found = dialog->findChild<T*>(QLatin1String(name));
        EXPECT_NE(found, nullptr) << name;
        return found;
    }
    // Of a setting: "RPMLimit".
    QSlider* Slider(const std::string& setting) const { return Find<QSlider>(("sld" + setting).c_str()); }
    std::string Label(const std::string& setting) const {
        return Find<QLabel>(("lbl" + setting + "Val").c_str())->text().toStdString();
    }
    std::string Vss() const { return Find<QLineEdit>("txtVSSFreq")->text().toStdString(); }
    bool FrameShown(const char* name) const { return Find<QGroupBox>(name)->isVisible(); }

    // Through the window system's way, so that the focus and the buttons are as a mouse makes them.
    void Click(QWidget* widget, QPoint place = {8, 8}) {
        QTest::mouseClick(dialog->windowHandle(), Qt::LeftButton, {}, widget->mapTo(dialog.get(), place));
        QTest::qWait(0);
    }
    static void Key(Qt::Key key, Qt::KeyboardModifiers keys = {}) {
        QTest::keyClick(QApplication::focusWidget(), key, keys);
    }
    void TypeVss(const char* text) {
        auto* box = Find<QLineEdit>("txtVSSFreq");
        box->setFocus();
        box->selectAll();
        QTest::keyClicks(box, QLatin1String(text));
    }

    IdleLine line;
    TestSession test{line};
    Session& session = test.session;
    ModuleParameters& parameters = session.state.ModuleParameters;
    std::unique_ptr<ModParamsDialog> dialog;
};

TEST_F(ModParamsDialogTest, OpensOnTheParameters) {
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
    for (const auto& [setting, position, text] :
         {std::tuple("RPMLimit", 72, "5750"), std::tuple("InitTiming", 8, "-3"),
          std::tuple("RearOffset", 1, "4"), std::tuple("CrankRevs", 1, "2")}) {
        EXPECT_EQ(Slider(setting)->value(), position) << setting;
        EXPECT_EQ(Label(setting), text);
    }
    EXPECT_TRUE(Find<QRadioButton>("optFLASHAdvTable")->isChecked());
    EXPECT_TRUE(Find<QCheckBox>("chkTachEnable")->isChecked());
    EXPECT_EQ(Vss(), "1000");
    Click(Find<QPushButton>("cmdOK"));
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(parameters, before);
}

TEST_F(ModParamsDialogTest, SlidersRaiseTheirValueUpwards) {
    parameters.FixedLimFlag = true;
    parameters.RPMLimit = 5750;
    Open();
    for (const auto& [setting, key, shown] :
         {std::tuple("RPMLimit", Qt::Key_Up, "5800"), std::tuple("RPMLimit", Qt::Key_PageUp, "6800"),
          std::tuple("RPMLimit", Qt::Key_Home, "9900"), std::tuple("RPMLimit", Qt::Key_End, "3000"),
          std::tuple("CrankRevs", Qt::Key_PageUp, "2"), std::tuple("CrankRevs", Qt::Key_Up, "3"),
          std::tuple("RearOffset", Qt::Key_PageDown, "-2"), std::tuple("RearOffset", Qt::Key_Down, "-3")}) {
        Slider(setting)->setFocus();
        Key(key);
        EXPECT_EQ(Label(setting), shown);
        EXPECT_EQ(Slider(setting)->accessibleDescription().toStdString(), shown);
    }
    EXPECT_EQ(parameters.RPMLimit, 3000);
    EXPECT_EQ(parameters.CrankRevs, 3);
    EXPECT_EQ(parameters.RearOffset, -3);
}

TEST_F(ModParamsDialogTest, HoldsAnExTablesTimingAtZero) {
    session.state.TableType = TableType::EX;
    parameters.FixedInitialTmgFlag = true;
    parameters.InitialTiming = 3;
    Open();
    EXPECT_FALSE(FrameShown("fraRearOffset"));
    // Positive timing from a file stays until the slider moves.
    EXPECT_EQ(Label("InitTiming"), "3");
    Slider("InitTiming")->setFocus();
    for (const auto key : {Qt::Key_Down, Qt::Key_Up}) {
        Key(key);
        EXPECT_EQ(parameters.InitialTiming, 0);
        EXPECT_EQ(Slider("InitTiming")->value(), 5);
    }
    Key(Qt::Key_Down);
    EXPECT_EQ(Label("InitTiming"), "-1");
}

TEST_F(ModParamsDialogTest, FramesComeAndGoWithTheirChecks) {
    Open();
    const auto ok = Find<QPushButton>("cmdOK")->geometry();
    EXPECT_TRUE(FrameShown("fraRearOffset"));
    for (const auto& [frame, check, setting, neutral] :
         {std::tuple("fraRPMLimit", "chkFixedRPMLimit", "RPMLimit", 99),
          std::tuple("fraInitTiming", "chkFixedInitTiming", "InitTiming", 5)}) {
        EXPECT_FALSE(FrameShown(frame));
        const auto text = Label(setting);
        Click(Find<QCheckBox>(check));
        EXPECT_TRUE(FrameShown(frame));
        EXPECT_EQ(Find<QPushButton>("cmdOK")->geometry(), ok);
        Slider(setting)->setValue(neutral - 3);
        EXPECT_NE(Label(setting), text);
        Click(Find<QCheckBox>(check));
        EXPECT_FALSE(FrameShown(frame));
        EXPECT_EQ(Slider(setting)->value(), neutral);
        EXPECT_EQ(Label(setting), text);
    }
    EXPECT_EQ(parameters, ModuleParameters{});
}

TEST_F(ModParamsDialogTest, WarnsOfFlashTablesByMouseAndKeys) {
    Open();
    const std::function<void()> ways[] = {[&] { Click(Find<QRadioButton>("optFLASHAdvTable")); },
                                          [] { Key(Qt::Key_Down); }};
    for (const auto& choose : ways) {
        test.prompts.Expect({"Selecting this option disables any advance table that you upload to EEPROM.",
                             "Advance Table Options", Icon::Warning, Buttons::Ok},
                            Answer::Ok);
        choose();
        EXPECT_FALSE(parameters.SelEEPROMTblFlag);
        Click(Find<QRadioButton>("optFLASHAdvTable"));
        Key(Qt::Key_Up);
        EXPECT_TRUE(parameters.SelEEPROMTblFlag);
    }
}

// Each way out of the VSS box asks once.
TEST_F(ModParamsDialogTest, ValidatesTheVssFrequencyHoweverTheFocusLeaves) {
    // A box in the middle of a click would take the button's release away from what was clicked.
    test.prompts.whileOpen = [] { EXPECT_EQ(QApplication::mouseButtons(), Qt::NoButton); };
    const std::function<void()> ways[] = {
        [&] { Key(Qt::Key_Tab); },
        [&] { Key(Qt::Key_Tab, Qt::ShiftModifier); },
        [&] { Click(Find<QCheckBox>("chkTachEnable")); },
        [&] { Click(Slider("CrankRevs")); },
        [&] { Click(Find<QPushButton>("cmdOK")); },
        [&] { Key(Qt::Key_Return); },
    };
    for (std::size_t way = 0; way < std::size(ways); ++way) {
        Open();
        parameters.VSSFreq = 1424;
        const bool tach = parameters.TachEnableFlag;
        TypeVss("abc");
        test.prompts.Expect(
            {"Value must be greater than or equal to 910", "VSS Frequency", Icon::Warning, Buttons::Ok},
            Answer::Ok);
        ways[way]();
        EXPECT_TRUE(test.prompts.Done()) << way;
        EXPECT_EQ(parameters.VSSFreq, 910) << way;
        EXPECT_EQ(Vss(), "910") << way;
        EXPECT_EQ(dialog->isVisible(), way < 4) << way;
        // The click that left the box has done its own work too.
        EXPECT_EQ(parameters.TachEnableFlag, way == 2 ? !tach : tach) << way;
        if (dialog->isVisible()) Click(Find<QPushButton>("cmdOK"));
        EXPECT_FALSE(dialog->isVisible());
    }
}

TEST_F(ModParamsDialogTest, ClosingAppliesNoUnfinishedVssFrequency) {
    for (const bool escape : {true, false}) {
        Open();
        TypeVss("1234");
        escape ? Key(Qt::Key_Escape) : static_cast<void>(dialog->close());
        dialog.reset();
        EXPECT_EQ(parameters.VSSFreq, 1424);
    }
}

TEST_F(ModParamsDialogTest, IsUsableByKeyboardAlone) {
    parameters.FixedLimFlag = parameters.FixedInitialTmgFlag = true;
    Open();
    std::vector<std::string> visited;
    for (int stop = 0; stop < 10; ++stop) {
        visited.push_back(QApplication::focusWidget()->objectName().toStdString());
        Key(Qt::Key_Tab);
    }
    EXPECT_EQ(visited,
              (std::vector<std::string>{"optEEPROMAdvTable", "chkFixedInitTiming", "chkFixedRPMLimit",
                                        "sldCrankRevs", "sldRearOffset", "sldInitTiming", "txtVSSFreq",
                                        "chkTachEnable", "sldRPMLimit", "cmdOK"}));
}

TEST_F(ModParamsDialogTest, KeepsItsDesignSizeAndCutsNothingAtLargerFonts) {
    parameters.FixedLimFlag = parameters.FixedInitialTmgFlag = true;
    const auto font = QApplication::font();
    for (const double points : {8.25, 11.0, 16.0, 24.0}) {
        auto larger = font;
        larger.setPointSizeF(points);
        QApplication::setFont(larger);
        Open();
        if (points < 9) {
            EXPECT_EQ(dialog->size(), QSize(473, 512));
            for (const auto& [frame, size] :
                 {std::pair("fraOptions", QSize(337, 177)), std::pair("fraRearOffset", QSize(121, 169)),
                  std::pair("fraModule", QSize(265, 113)), std::pair("fraRPMLimit", QSize(97, 401))})
                EXPECT_EQ(Find<QGroupBox>(frame)->size(), size) << frame;
            EXPECT_EQ(Slider("RPMLimit")->height(), 337);
        }
        for (const auto* part : dialog->findChildren<QWidget*>())
            EXPECT_TRUE(part->minimumSizeHint().boundedTo(part->size()) == part->minimumSizeHint() &&
                        part->parentWidget()->rect().contains(part->geometry()))
                << part->objectName().toStdString() << " at " << points;
    }
    QApplication::setFont(font);
}

}  // namespace
}  // namespace rv52::test
