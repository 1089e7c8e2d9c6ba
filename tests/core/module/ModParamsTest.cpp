#include "core/SessionTest.h"
#include "module/commands/ModParams.h"

#include <tuple>

namespace rv52::test {
namespace {

class ModParamsTest : public SessionTest {};

TEST_F(ModParamsTest, OpeningRewritesWhatIsOutOfSight) {
    parameters = {3, -4, 2, 5750, 1000, true, false, true, true, 0xA5};
    auto expected = parameters;
    OpenModParams(session);
    EXPECT_EQ(parameters, expected);

    expected.FixedLimFlag = expected.FixedInitialTmgFlag = false;
    parameters = expected;
    expected.RPMLimit = 3000;
    expected.InitialTiming = 0;
    OpenModParams(session);
    EXPECT_EQ(parameters, expected);

    session.state.TableType = TableType::EX;
    expected.RearOffset = 0;
    OpenModParams(session);
    EXPECT_EQ(parameters, expected);
}

TEST_F(ModParamsTest, SlidersCountFromTheTop) {
    const std::tuple<SliderScale, int, int> ends[] = {
        {kRPMLimitScale, 30, 9900}, {kRPMLimitScale, 99, 3000}, {kRPMLimitScale, 72, 5700},
        {kInitTimingScale, 0, 5},   {kInitTimingScale, 10, -5}, {kRearOffsetScale, 0, 5},
        {kRearOffsetScale, 10, -5}, {kCrankRevsScale, 0, 3},    {kCrankRevsScale, 3, 0}};
    for (const auto& [scale, position, value] : ends) {
        EXPECT_EQ(scale.ValueAt(position), value);
        EXPECT_EQ(scale.PositionOf(value), position);
    }
    // Halfway between two positions the even one.
    EXPECT_EQ(kRPMLimitScale.PositionOf(5750), 72);
    EXPECT_EQ(kRPMLimitScale.PositionOf(5650), 72);
    EXPECT_EQ(kRPMLimitScale.PositionOf(5649), 73);
}

TEST_F(ModParamsTest, ASliderMovesItsParameterAlone) {
    const auto before = parameters;
    sldRPMLimit_Change(session, 71);
    sldRearOffset_Change(session, 10);
    sldCrankRevs_Change(session, 0);
    EXPECT_EQ(sldInitTiming_Change(session, 1), 1);
    auto expected = before;
    expected.RPMLimit = 5800;
    expected.RearOffset = -5;
    expected.CrankRevs = 3;
    expected.InitialTiming = 4;
    EXPECT_EQ(parameters, expected);

    session.state.TableType = TableType::EX;
    EXPECT_EQ(sldInitTiming_Change(session, 1), 5);
    EXPECT_EQ(parameters.InitialTiming, 0);
    EXPECT_EQ(sldInitTiming_Change(session, 7), 7);
    EXPECT_EQ(parameters.InitialTiming, -2);
}

TEST_F(ModParamsTest, ClearingAFixedValueMakesItNeutral) {
    using Click = void (*)(Session&, bool);
    for (const Click click : {chkFixedRPMLimit_Click, chkFixedInitTiming_Click, chkTachEnable_Click}) {
        parameters = {4, 0, 0, 5700, 1424, false, true, false, false, 0};
        auto expected = parameters;
        expected.FixedLimFlag = click == chkFixedRPMLimit_Click;
        expected.FixedInitialTmgFlag = click == chkFixedInitTiming_Click;
        expected.TachEnableFlag = click == chkTachEnable_Click;
        click(session, true);
        EXPECT_EQ(parameters, expected);

        if (expected.FixedLimFlag) expected.RPMLimit = 3000;
        if (expected.FixedInitialTmgFlag) expected.InitialTiming = 0;
        expected.FixedLimFlag = expected.FixedInitialTmgFlag = expected.TachEnableFlag = false;
        click(session, false);
        EXPECT_EQ(parameters, expected);
    }
}

TEST_F(ModParamsTest, WarnsWhenTheTableInEepromIsDisabled) {
    // Still in force while the warning is read.
    prompts.whileOpen = [&] { EXPECT_TRUE(parameters.SelEEPROMTblFlag); };
    optEEPROMAdvTable_Click(session);
    prompts.ExpectNotice("Selecting this option disables any advance table that you upload to EEPROM.",
                         "Advance Table Options");
    for (int time = 0; time < 2; ++time) {
        optFLASHAdvTable_Click(session);
        EXPECT_FALSE(parameters.SelEEPROMTblFlag);
    }
}

TEST_F(ModParamsTest, BringsTheVssFrequencyIntoItsRange) {
    const std::string low = "Value must be greater than or equal to 910";
    const std::string high = "Value must be less than or equal to 1700";
    const std::string nines(1000, '9');
    const std::tuple<std::string, int, std::string> cases[] = {
        {"910", 910, ""},     {"1700.9", 1700, ""}, {"1500.9", 1500, ""}, {" 1424 Hz", 1424, ""},
        {"", 910, low},       {"909.99", 910, low}, {"-1500", 910, low},  {"1,500", 910, low},
        {"1701", 1700, high}, {nines, 1700, high}};
    for (const auto& [text, value, warning] : cases) {
        if (!warning.empty()) prompts.ExpectNotice(warning, "VSS Frequency");
        txtVSSFreq_Validate(session, text);
        EXPECT_EQ(parameters.VSSFreq, value) << text;
        EXPECT_TRUE(prompts.Done()) << text;
    }
}

}  // namespace
}  // namespace rv52::test
