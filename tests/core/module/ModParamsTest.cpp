#include "core/SessionTest.h"
#include "module/commands/ModParams.h"

#include <tuple>

namespace rv52::test {
namespace {

class ModParamsTest : public SessionTest {};

TEST_F(ModParamsTest, OpeningRewritesWhatIsOutOfSight) {
    const std::tuple<TableType, ModuleParameters, ModuleParameters> cases[] = {
        {TableType::RACE,
         {3, -4, 2, 5750, 1000, true, false, true, true, 0xA5},
         {3, -4, 2, 5750, 1000, true, false, true, true, 0xA5}},
        {TableType::RACE,
         {3, -4, 2, 5750, 1000, false, false, false, true, 0xA5},
         {0, -4, 2, 3000, 1000, false, false, false, true, 0xA5}},
        {TableType::EX,
         {3, -4, 2, 5750, 1000, true, false, true, true, 0xA5},
         {3, 0, 2, 5750, 1000, true, false, true, true, 0xA5}}};
    for (const auto& [type, before, after] : cases) {
        session.state.TableType = type;
        parameters = before;
        OpenModParams(session);
        EXPECT_EQ(parameters, after) << ToText(type) << ", fixed " << before.FixedLimFlag;
    }
}

TEST_F(ModParamsTest, SlidersCountFromTheTop) {
    // Halfway between two positions the even one.
    const std::tuple<SliderScale, int, int> places[] = {
        {kRPMLimitScale, 9900, 30}, {kRPMLimitScale, 3000, 99}, {kRPMLimitScale, 5750, 72},
        {kRPMLimitScale, 5650, 72}, {kRPMLimitScale, 5649, 73}, {kInitTimingScale, 5, 0},
        {kInitTimingScale, -5, 10}, {kRearOffsetScale, -5, 10}, {kCrankRevsScale, 0, 3}};
    for (const auto& [scale, value, position] : places)
        EXPECT_EQ(scale.PositionOf(value), position) << value;
}

TEST_F(ModParamsTest, ASliderMovesItsParameterAlone) {
    sldRPMLimit_Change(session, 71);
    sldRearOffset_Change(session, 10);
    sldCrankRevs_Change(session, 0);
    EXPECT_EQ(sldInitTiming_Change(session, 1), 1);
    EXPECT_EQ(parameters, (ModuleParameters{4, -5, 3, 5800}));

    session.state.TableType = TableType::EX;
    EXPECT_EQ(sldInitTiming_Change(session, 1), 5);
    EXPECT_EQ(parameters.InitialTiming, 0);
    EXPECT_EQ(sldInitTiming_Change(session, 7), 7);
    EXPECT_EQ(parameters.InitialTiming, -2);
}

TEST_F(ModParamsTest, ClearingAFixedValueMakesItNeutral) {
    const std::tuple<void (*)(Session&, bool), ModuleParameters, ModuleParameters> clicks[] = {
        {chkFixedRPMLimit_Click, {4, 0, 0, 5700, 1424, true}, {4, 0, 0, 3000}},
        {chkFixedInitTiming_Click, {4, 0, 0, 5700, 1424, false, true, true}, {0, 0, 0, 5700}},
        {chkTachEnable_Click, {4, 0, 0, 5700, 1424, false, true, false, true}, {4, 0, 0, 5700}}};
    for (const auto& [click, ticked, cleared] : clicks) {
        SCOPED_TRACE(testing::Message() << ticked.FixedLimFlag << ticked.FixedInitialTmgFlag);
        parameters = {4, 0, 0, 5700};
        click(session, true);
        EXPECT_EQ(parameters, ticked);
        click(session, false);
        EXPECT_EQ(parameters, cleared);
    }
}

TEST_F(ModParamsTest, WarnsWhenTheTableInEepromIsDisabled) {
    // Still in force while the warning is read.
    prompts.whileOpen = [&] { EXPECT_TRUE(parameters.SelEEPROMTblFlag); };
    optEEPROMAdvTable_Click(session);
    prompts.ExpectNotice("Selecting this option disables any advance table that you upload to EEPROM.",
                         "Advance Table Options");
    optFLASHAdvTable_Click(session);
    EXPECT_FALSE(parameters.SelEEPROMTblFlag);
    optFLASHAdvTable_Click(session);
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
