#include "app/Branding.h"
#include "app/HelpMenu.h"
#include "app/Leaving.h"
#include "app/RunCommand.h"
#include "app/StartUp.h"
#include "app/state/ChartAndGridLayout.h"
#include "app/state/FormResize.h"
#include "simulator/SimulatedModule.h"
#include "simulator/VirtualLine.h"
#include "support/ShownTable.h"
#include "support/TestSession.h"
#include "table/commands/GridCursor.h"
#include "table/commands/TableDisplay.h"

#include <gtest/gtest.h>

namespace rv52 {
namespace {

using test::ShowAs;
using test::TestSession;

class ProgramTest : public testing::Test {
 protected:
    SimulatedModule module_{ModuleOptions()};
    VirtualLine line_{module_};
    TestSession test_{line_};
    Session& session_ = test_.session;

    void Start() {
        session_.state.BrandingLines = DefaultBrandingLines();
        ASSERT_TRUE(StartUp(session_));
    }
};

TEST_F(ProgramTest, StartsWithoutATableUnderTheBrand) {
    test_.settings.values["Properties/CommPort"] = "12";
    Start();
    EXPECT_EQ(test_.shell.caption, "Emberline Corvane RV52 Version 8.1");
    EXPECT_EQ(session_.state.CommPort, 12);
    EXPECT_EQ(session_.state.TableType, TableType::RACE);
    EXPECT_GT(session_.state.ExMaxTable.GetCell({Column(16), Row(11)}), 30.0);
    EXPECT_FALSE(session_.state.TableShown || session_.table.HasTable());

    line_.Open(12);
    line_.Raise(LineCondition::Parity);
    test_.prompts.Expect({"Parity error.", "Communications Error", Icon::Critical, Buttons::RetryCancel},
                         Answer::Cancel);
    line_.Yield();
}

TEST_F(ProgramTest, TellsOfSettingsThatCannotBeReadAndStartsAllTheSame) {
    test_.settings.failReads = true;
    test_.prompts.ExpectNotice("settings cannot be read\r\n\r\nCom1 is used until you choose another port.",
                               "Form Load");
    Start();
    EXPECT_EQ(session_.state.CommPort, 1);
}

TEST_F(ProgramTest, DoesNotStartWithoutTheFilesBesideIt) {
    const std::pair<std::string, std::string> files[] = {
        {"RV52_EX_Max.dat", "Chart data file RV52_EX_Max.dat not found."},
        {"RV52_EX_Chart.oc3", "Chart template file RV52_EX_Chart.oc3 not found."}};
    for (const auto& [name, message] : files) {
        auto& content = test_.files.contents["/program/" + name];
        content.resize(content.size() / 2);
        test_.prompts.ExpectNotice(message, "Form Load");
        EXPECT_FALSE(StartUp(session_));
        test_.files.contents.erase("/program/" + name);
        test_.prompts.ExpectNotice(message, "Form Load");
        EXPECT_FALSE(StartUp(session_));
    }
}

TEST_F(ProgramTest, ExitAsksOnlyWithATableAndClosesThePortInAnyCase) {
    Start();
    session_.table.Replace(AdvanceTable(TableType::RACE));
    ShowTable(session_);
    line_.Open(1);
    test_.prompts.ExpectQuestion("Save advance table before exiting?", "Exit Program", Answer::Cancel);
    session_.state.LineErrorCount = 2;
    test_.prompts.whileOpen = [this] { WindowResized(session_); };
    RequestExit(session_);
    test_.prompts.whileOpen = nullptr;
    EXPECT_FALSE(test_.shell.closed);
    EXPECT_FALSE(line_.IsOpen());
    EXPECT_EQ(session_.state.LineErrorCount, 0);
    EXPECT_TRUE(test_.view.shown);

    test_.prompts.ExpectQuestion("Save advance table before exiting?", "Exit Program", Answer::Yes);
    test_.prompts.ExpectSave("");
    RequestExit(session_);
    EXPECT_TRUE(test_.shell.closed);

    test_.shell.closed = false;
    HideTable(session_);
    line_.Open(1);
    RequestExit(session_);
    EXPECT_FALSE(line_.IsOpen());
    EXPECT_TRUE(test_.shell.closed);
}

TEST_F(ProgramTest, OneCommandAtATimeAndWhatHadToWaitFollowsIt) {
    Start();
    session_.state.LineErrorCount = 2;
    bool second = false;
    RunCommand(session_, [&](Session& running) {
        RunCommand(running, [&](Session&) { second = true; });
        test_.shell.size = {6000, 6000};
        WindowResized(running);
        EXPECT_EQ(test_.shell.layout.chart.width, 6000);
        EXPECT_EQ(running.state.LineErrorCount, 2);
        RequestExit(running);
        EXPECT_FALSE(running.state.AbortRequested);
        running.gate.SetCloseAborts(true);
        RequestExit(running);
        EXPECT_TRUE(running.state.AbortRequested);
        EXPECT_FALSE(test_.shell.closed);
    });
    EXPECT_FALSE(second);
    EXPECT_EQ(session_.state.LineErrorCount, 0);
    EXPECT_TRUE(test_.shell.closed);
}

// Whether the system asked the program to end just now, or a good while ago.
enum class Earlier { Never, JustNow, Before };

TEST_F(ProgramTest, TheSystemAsksOnceAsAUserWouldAndThenNoMoreButNeverStopsProgramming) {
    struct Moment {
        const char* name;
        Earlier earlier;
        bool running;
        LinkWork work;
        EndAct act;
        bool closeFollows, boxesDismissed, readEnds;
    };
    using enum EndAct;
    constexpr auto none = LinkWork::None;
    const Moment moments[] = {
        {"idle", Earlier::Never, false, none, CloseBoxes, false, false, false},
        {"idle, the same closing terminal", Earlier::JustNow, false, none, Nothing, false, false, false},
        {"idle, again", Earlier::Before, false, none, LeaveAtOnce, false, false, false},
        {"a box", Earlier::Never, true, none, CloseBoxes, true, true, false},
        {"reading", Earlier::Never, true, LinkWork::Reading, CloseBoxes, true, true, true},
        {"reading, again", Earlier::Before, true, LinkWork::Reading, LeaveAtOnce, false, false, false},
        {"programming", Earlier::Never, true, LinkWork::Programming, CloseBoxes, true, false, false},
        {"programming, again", Earlier::Before, true, LinkWork::Programming, CloseBoxes, true, false, false},
        {"verifying", Earlier::Never, true, LinkWork::Verifying, CloseBoxes, true, false, false},
        {"verifying, again", Earlier::Before, true, LinkWork::Verifying, CloseBoxes, true, false, false},
    };
    for (const auto& moment : moments) {
        SCOPED_TRACE(moment.name);
        auto& gate = session_.gate;
        gate.SetEndAskedAt({});
        const auto ask = [&] {
            session_.state.LinkWork = moment.work;
            if (moment.earlier != Earlier::Never) gate.SetEndAskedAt(line_.Now());
            if (moment.earlier == Earlier::Before) line_.WaitFor(std::chrono::seconds(1));
            EXPECT_EQ(AskedToEnd(session_), moment.act);
            EXPECT_EQ(gate.ClosePending(), moment.closeFollows);
            EXPECT_EQ(gate.DismissesBoxes(), moment.boxesDismissed);
            EXPECT_EQ(session_.state.AbortRequested, moment.readEnds);
            session_.state.LinkWork = LinkWork::None;
        };
        test_.shell.closed = false;
        if (!moment.running) {
            ask();
            continue;
        }
        RunCommand(session_, [&](Session&) {
            gate.SetCloseAborts(moment.work == LinkWork::Reading);
            ask();
        });
        EXPECT_EQ(test_.shell.closed, moment.closeFollows);
        EXPECT_FALSE(gate.DismissesBoxes());
    }
}

TEST_F(ProgramTest, WhileLeavingTheSystemAddsNoQuestionAndAfterACancelAsksAnew) {
    ShowAs(session_, AdvanceTable(TableType::RACE));
    for (int times = 0; times < 2; ++times) {
        test_.prompts.ExpectQuestion("Save advance table before exiting?", "Exit Program", Answer::Cancel);
        test_.prompts.whileOpen = [this] {
            EXPECT_EQ(AskedToEnd(session_), EndAct::Nothing);
            line_.WaitFor(std::chrono::seconds(1));
            EXPECT_EQ(AskedToEnd(session_), EndAct::LeaveAtOnce);
        };
        RequestExit(session_);
    }
    EXPECT_FALSE(test_.shell.closed);
}

TEST_F(ProgramTest, DividesTheWindowBetweenChartAndGrid) {
    const auto first = LayOut({kClientWidth, kClientHeight});
    EXPECT_EQ(first.chart, (TwipRectangle{0, 0, 9030, 0.7 * 7515}));
    // 0.3 × 7515 − 725 is 1529.5: halves go to the even neighbour.
    EXPECT_EQ(first.grid, (TwipRectangle{0, 0.7 * 7515, 8880, 1530}));
    const auto tiny = LayOut({100, 100});
    EXPECT_EQ(tiny.grid.width + tiny.grid.height, 0);
    // Rows get a ninth and columns a seventeenth.
    EXPECT_EQ(PitchOf(1530, 8880).rowHeight, 169);
    EXPECT_EQ(PitchOf(1530, 8880).columnWidth, 521);
    EXPECT_EQ(PitchOf(0, 0).rowHeight + PitchOf(0, 0).columnWidth, 0);
}

TEST_F(ProgramTest, AboutNamesBrandVersionAndMaker) {
    session_.state.BrandingLines = {"Brand", "Company", "Town"};
    test_.prompts.ExpectNotice(
        "Brand Corvane RV52 Version 8.10\r\n"
        "Ignition advance tables for RV52 modules. All rights reserved.\r\n\r\n"
        "Company\r\nTown\r\n",
        "About", Icon::Information);
    mnuAbout_Click(session_);
}

}  // namespace
}  // namespace rv52
