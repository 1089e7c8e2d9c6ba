#include "link/ModuleProtocol.h"
#include "link/PortSetup.h"
#include "support/ConnectedSession.h"

#include <gtest/gtest.h>

namespace rv52::test {
namespace {

TEST(PortSetupTest, StoresAPickedPortAtOnceAndUsesItNext) {
    ConnectedModule at(Options(TableType::RACE, true));
    mnuPortSetup_Click(at.session);
    EXPECT_TRUE(at.shell.portPanelShown);
    OpenLine(at.session);
    cboPort_Click(at.session, 11);
    EXPECT_EQ(at.state.CommPort, 12);
    EXPECT_EQ(at.connected.test.settings.values["Properties/CommPort"], "12");
    EXPECT_FALSE(at.line.IsOpen());
    ReadFirmwareID(at.session);
    EXPECT_EQ(at.line.Opens(), (std::vector{1, 12}));
    cmdPortSelectOK_Click(at.session);
    EXPECT_FALSE(at.shell.portPanelShown);
    EXPECT_EQ(StoredCommPort(at.connected.test.settings), 12);
}

TEST(PortSetupTest, AsksWhenThePortCannotBeStored) {
    ConnectedModule at(Options(TableType::RACE, true));
    at.connected.test.settings.failWrites = true;
    OpenLine(at.session);
    at.prompts.ExpectError("settings cannot be written", Answer::Retry);
    at.prompts.ExpectError("settings cannot be written", Answer::Ignore);
    cboPort_Click(at.session, 2);
    EXPECT_EQ(at.state.CommPort, 3);
    EXPECT_FALSE(at.line.IsOpen());
}

TEST(PortSetupTest, TakesNoPortFromAStoreThatHoldsNone) {
    const std::pair<const char*, int> stored[] = {{"1", 1},   {"255", 255}, {"0", 1},
                                                  {"256", 1}, {"-3", 1},    {"12x", 1},
                                                  {"", 1},    {"3.5", 1},   {"99999999999", 1}};
    for (const auto& [text, port] : stored) {
        MemorySettings settings;
        settings.values["Properties/CommPort"] = text;
        EXPECT_EQ(StoredCommPort(settings), port) << text;
    }
    EXPECT_EQ(StoredCommPort(MemorySettings{}), 1);
}

}  // namespace
}  // namespace rv52::test
