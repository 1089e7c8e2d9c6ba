#include "link/commands/PortSetup.h"
#include "support/ConnectedSession.h"

#include <gtest/gtest.h>

namespace rv52::test {
namespace {

TEST(PortSetupTest, StoresAPickedPortAtOnceAndUsesItNext) {
    ConnectedModule at(Options(TableType::RACE, true));
    auto& settings = at.connected.test.settings;
    at.line.Open(at.state.CommPort);
    cboPort_Click(at.session, 11);
    EXPECT_EQ(at.state.CommPort, 12);
    EXPECT_EQ(settings.values["Properties/CommPort"], "12");
    EXPECT_FALSE(at.line.IsOpen());
    at.line.Open(at.state.CommPort);
    EXPECT_EQ(at.line.Opens(), (std::vector{1, 12}));

    // A port that cannot be stored is used all the same.
    settings.failWrites = true;
    at.prompts.ExpectError("settings cannot be written", Answer::Retry);
    at.prompts.ExpectError("settings cannot be written", Answer::Ignore);
    cboPort_Click(at.session, 2);
    EXPECT_EQ(at.state.CommPort, 3);
    EXPECT_FALSE(at.line.IsOpen());
}

TEST(PortSetupTest, TakesNoPortFromAStoreThatHoldsNone) {
    MemorySettings settings;
    EXPECT_EQ(StoredCommPort(settings), 1);
    const std::pair<const char*, int> stored[] = {{"12", 12}, {"255", 255}, {"0", 1},
                                                  {"256", 1}, {"-3", 1},    {"12x", 1},
                                                  {"", 1},    {"3.5", 1},   {"99999999999", 1}};
    for (const auto& [text, port] : stored) {
        settings.values["Properties/CommPort"] = text;
        EXPECT_EQ(StoredCommPort(settings), port) << text;
    }
}

}  // namespace
}  // namespace rv52::test
