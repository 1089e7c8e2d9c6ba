#include "link/LineErrors.h"
#include "module/Report.h"
#include "support/DismissingUser.h"
#include "support/IdleLine.h"
#include "support/ShownTable.h"
#include "support/TemporaryFolder.h"
#include "support/TestSession.h"
#include "table/FileCommands.h"
#include "table/GridView.h"
#include "table/SelectionCommands.h"

#include <clocale>
#include <gtest/gtest.h>
#include <locale>

namespace rv52::test {
namespace {

// A user who types numbers with a point, as every text of the program shows them.
class TypingUser : public DismissingUser {
 public:
    std::string AskText(const InputBox&) override { return "+7.5%"; }
    std::string AskOpenPath(const FileDialog&) override { return "/open.tbl"; }
    std::string AskSavePath(const FileDialog&) override { return "/saved.tbl"; }
};

// Opens, modifies, saves and prints a table: every text that came of it, but for boxes and the date.
std::string Everything() {
    IdleLine line;
    TestSession parts(line);
    TypingUser user;
    Session session({line, user, parts.view, parts.shell, parts.files, parts.settings, parts.printer});
    QWidget window;
    const GridView grid(
        session, [](const auto& event) { event(); }, [&](const auto& command) { command(session); }, &window);

    parts.files.contents["/open.tbl"] = ShippedFile("RV52_Max.dat") + "!RPMLimit: 6149.6\r\n";
    mnuOpenTable_Click(session);
    session.sheet.Select({{1, 1}, {8, 16}}, {1, 1});
    mnuPopUpModify3D_Click(session);
    session.state.TableShown = true;
    mnuSaveTable_Click(session);
    mnuPrintTable_Click(session);

    std::string all = parts.files.contents["/saved.tbl"];
    for (int row = 0; row < grid.model()->rowCount(); ++row)
        for (int column = 0; column < grid.model()->columnCount(); ++column)
            all += grid.model()->index(row, column).data().toString().toStdString() + " ";
    for (const auto& job : parts.printer.jobs)
        for (const auto& printed : job.lines)
            all += printed + "\n";
    return all;
}

class LocaleTest : public testing::Test {
 protected:
    ~LocaleTest() override {
        std::locale::global(std::locale::classic());
        QLocale::setDefault(QLocale::c());
        ::unsetenv("LOCPATH");
    }

    // German, made here, since a desktop need not have it.
    void SpeakGerman() {
        const auto made = folder_.Path() / "de_DE.UTF-8";
        const auto command = "localedef --no-archive -i de_DE -f UTF-8 " + made.string();
        ASSERT_EQ(std::system(command.c_str()), 0);
        ::setenv("LOCPATH", folder_.Path().c_str(), 1);
        ASSERT_NE(std::setlocale(LC_ALL, "de_DE.UTF-8"), nullptr);
        std::locale::global(std::locale("de_DE.UTF-8"));
        QLocale::setDefault(QLocale(QLocale::German));
        char text[8];
        std::snprintf(text, sizeof text, "%.1f", 2.5);
        ASSERT_STREQ(text, "2,5");
    }

    TemporaryFolder folder_;
};

TEST_F(LocaleTest, NumbersKeepTheirPointInAnyLanguage) {
    const auto usual = Everything();
    SpeakGerman();
    EXPECT_EQ(Everything(), usual);
    EXPECT_EQ(usual.find(','), std::string::npos);
    EXPECT_NE(usual.find("!RPMLimit: 6150"), std::string::npos);
    EXPECT_NE(usual.find('.'), std::string::npos);
}

}  // namespace
}  // namespace rv52::test
