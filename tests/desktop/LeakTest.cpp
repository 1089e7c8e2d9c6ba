#include "chart/ui/ChartView.h"
#include "module/commands/Download.h"
#include "module/commands/Upload.h"
#include "platform/qt/QtFiles.h"
#include "support/ConnectedSession.h"
#include "support/DismissingUser.h"
#include "support/TemporaryFolder.h"
#include "table/TableFile.h"
#include "table/commands/EndEdit.h"
#include "table/commands/OpenTable.h"
#include "table/commands/SaveAndCloseTable.h"
#include "table/ui/GridView.h"

#include <QCoreApplication>

#include <gtest/gtest.h>
#include <malloc.h>

namespace rv52::test {

using namespace std::chrono_literals;

// Saves only when told to, and then over the last copy.
struct DayLongUser : DismissingUser {
    Answer Ask(const MessageBox& box) override {
        if (box.buttons != Buttons::YesNoCancel) return DismissAnswer(box.buttons);
        return box.text.starts_with("Save advance table") ? Answer::No : Answer::Yes;
    }
    std::string AskOpenPath(const FileDialog&) override { return path; }
    std::string AskSavePath(const FileDialog&) override { return path + " copy"; }

    const TemporaryFolder folder;
    const std::string path = (folder.Path() / "table.tbl").string();
};

struct Held {
    std::size_t bytes = ::mallinfo2().uordblks;
    std::ptrdiff_t descriptors = std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
};

TEST(LeakTest, AnHourLeavesMemoryAndDescriptorsWhereTheyWere) {
    DayLongUser user;
    QtFiles files;
    files.ReplaceWhole(user.path, FormatTableFile(AdvanceTable(TableType::RACE), {}));
    SimulatedModule module(Options(TableType::RACE, true));
    ConnectedSession at(module);
    // The chart templates beside the test are the program's own.
    Session session({at.line, user, at.test.view, at.test.shell, files, at.test.settings, at.test.printer});
    const auto dispatch = [](const auto& event) { event(); };
    QWidget window;
    const GridView grid(
        session, dispatch, [&](const auto& command) { command(session); }, &window);
    const ChartView chart(session, dispatch, &window);
    window.show();

    const auto round = [&] {
        mnuOpenTable_Click(session);
        EXPECT_TRUE(session.state.TableShown);
        EndEdit(session, {GridRow(2), GridColumn(3)}, "12.5");
        mnuSaveTable_Click(session);
        mnuUpload_Click(session);
        mnuDownload_Click(session);
        EXPECT_TRUE(session.state.TableShown);
        QCoreApplication::processEvents();
        mnuCloseTable_Click(session);
        at.line.ForgetHistory();
        at.test.shell.progress.clear();
    };
    for (int warm = 0; warm < 20; ++warm)
        round();
    const Held before;
    const auto start = at.line.Now();
    int rounds = 0;
    for (; at.line.Now() - start < 1h && !testing::Test::HasFailure(); ++rounds)
        round();
    const Held after;
    EXPECT_GT(rounds, 500);
    EXPECT_EQ(after.descriptors, before.descriptors);
    // Less than a kilobyte in ten rounds: caches breathe, leaks grow.
    EXPECT_LT(after.bytes, before.bytes + 64 * 1024) << rounds << " rounds";
}

}  // namespace rv52::test
