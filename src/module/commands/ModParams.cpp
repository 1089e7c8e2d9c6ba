#include "module/commands/ModParams.h"

#include "app/state/Session.h"
#include "table/Numbers.h"

#include <algorithm>
#include <cmath>

namespace rv52 {

namespace {

constexpr int kNoTimingShift = 0;

ModuleParameters& Parameters(Session& session) {
    return session.state.ModuleParameters;
}

std::int16_t Word(int value) {
    return static_cast<std::int16_t>(value);
}

// What is not fixed has the value that its control starts from.
void FixRPMLimit(ModuleParameters& parameters, bool fixed) {
    parameters.FixedLimFlag = fixed;
    if (!fixed) parameters.RPMLimit = Word(ModuleParameters::kRPMLimit.lowest);
}

void FixInitialTiming(ModuleParameters& parameters, bool fixed) {
    parameters.FixedInitialTmgFlag = fixed;
    if (!fixed) parameters.InitialTiming = kNoTimingShift;
}

}  // namespace

void mnuEditModParams_Click(Session& session) {
    session.steps.Procedure([&](Steps& step) { step([&] { session.shell.ShowModParams(); }); });
}

void OpenModParams(Session& session) {
    auto& parameters = Parameters(session);
    if (session.state.TableType == TableType::EX) parameters.RearOffset = 0;
    FixRPMLimit(parameters, parameters.FixedLimFlag);
    FixInitialTiming(parameters, parameters.FixedInitialTmgFlag);
}

void sldRPMLimit_Change(Session& session, int position) {
    Parameters(session).RPMLimit = Word(kRPMLimitScale.ValueAt(position));
}

int sldInitTiming_Change(Session& session, int position) {
    if (session.state.TableType == TableType::EX)
        position = std::max(position, kInitTimingScale.PositionOf(kNoTimingShift));
    Parameters(session).InitialTiming = Word(kInitTimingScale.ValueAt(position));
    return position;
}

void sldRearOffset_Change(Session& session, int position) {
    Parameters(session).RearOffset = Word(kRearOffsetScale.ValueAt(position));
}

void sldCrankRevs_Change(Session& session, int position) {
    Parameters(session).CrankRevs = Word(kCrankRevsScale.ValueAt(position));
}

void chkFixedRPMLimit_Click(Session& session, bool ticked) {
    FixRPMLimit(Parameters(session), ticked);
}

void chkFixedInitTiming_Click(Session& session, bool ticked) {
    FixInitialTiming(Parameters(session), ticked);
}

void chkTachEnable_Click(Session& session, bool ticked) {
    Parameters(session).TachEnableFlag = ticked;
}

void optEEPROMAdvTable_Click(Session& session) {
    Parameters(session).SelEEPROMTblFlag = true;
}

void optFLASHAdvTable_Click(Session& session) {
    session.steps.Procedure([&](Steps& step) {
        if (Parameters(session).SelEEPROMTblFlag)
            step.Tell("Selecting this option disables any advance table that you upload to EEPROM.",
                      "Advance Table Options");
        Parameters(session).SelEEPROMTblFlag = false;
    });
}

void txtVSSFreq_Validate(Session& session, const std::string& text) {
    constexpr auto range = ModuleParameters::kVSSFreq;
    session.steps.Procedure([&](Steps& step) {
        const double value = std::floor(LeadingNumber(text).value_or(0.0));
        if (value < range.lowest)
            step.Tell("Value must be greater than or equal to " + std::to_string(range.lowest),
                      "VSS Frequency");
        else if (value > range.highest)
            step.Tell("Value must be less than or equal to " + std::to_string(range.highest),
                      "VSS Frequency");
        Parameters(session).VSSFreq =
            Word(static_cast<int>(std::clamp<double>(value, range.lowest, range.highest)));
    });
}

}  // namespace rv52
