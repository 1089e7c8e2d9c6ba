#include "platform/Failure.h"
#include "simulator/ScriptedPeer.h"
#include "simulator/VirtualLine.h"

#include <gtest/gtest.h>

namespace rv52 {
namespace {

using namespace std::chrono_literals;
using Conditions = std::vector<LineCondition>;

TEST(VirtualLineTest, RunsEventsAndDeliversConditionsOnlyWhereTheProgramYields) {
    ScriptedPeer peer;
    VirtualLine line(peer);
    Conditions delivered;
    std::vector<std::chrono::nanoseconds> ran;
    line.OnCondition([&](LineCondition condition) { delivered.push_back(condition); });
    line.At(5ms, [&] { ran.push_back(line.Now()); });
    line.At(15ms, [&] {
        ran.push_back(line.Now());
        line.Raise(LineCondition::Parity);
        line.Raise(LineCondition::Framing);
        line.Raise(LineCondition::Parity);
    });
    line.Open(1);
    line.Await(1, 10ms, Yielding::No);
    EXPECT_TRUE(ran.empty());
    line.Pump();
    line.Await(1, 20ms, Yielding::Yes);
    EXPECT_EQ(ran, (std::vector<std::chrono::nanoseconds>{10ms + 1ns, 15ms}));
    EXPECT_EQ(delivered, (Conditions{LineCondition::Framing, LineCondition::Parity}));
    line.Pause(2ms);
    EXPECT_EQ(line.Now(), 22ms + 1ns);
    EXPECT_EQ(delivered.size(), 2U);
    EXPECT_EQ(line.Pauses(), std::vector{2ms});
}

TEST(VirtualLineTest, FailsAsAPortDoes) {
    ScriptedPeer peer;
    peer.Then({0x01}).ThenHangUp();
    VirtualLine line(peer);
    EXPECT_THROW(line.SendByte(1), PortFailure);
    EXPECT_THROW(line.Await(1, 1s, Yielding::Yes), PortFailure);
    EXPECT_EQ(line.Now(), 0ns);

    line.FailOpens("Com1 is busy.", 1);
    EXPECT_THROW(line.Open(1), PortFailure);
    line.Open(1);
    line.SendByte(1);
    // What arrives while the line is closed is lost.
    line.Close();
    line.Pause(1ms);
    line.Open(1);
    EXPECT_EQ(line.Await(1, line.Now(), Yielding::No), 0);

    line.SendByte(2);
    EXPECT_THROW(line.Await(1, line.Now() + 1s, Yielding::No), PortFailure);
    EXPECT_FALSE(line.IsOpen());
    EXPECT_THROW(line.Open(1), PortFailure);
    line.Pause(1ms);
    line.PlugIn();
    line.Open(1);
    EXPECT_EQ(line.Opens().size(), 3U);
    EXPECT_EQ(line.FailedOpens(), 2);
    EXPECT_EQ(line.Closes(), 2);
}

}  // namespace
}  // namespace rv52
