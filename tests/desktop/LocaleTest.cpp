#include "UserActions.h"
#include "module/commands/Report.h"
#include "support/DismissingUser.h"
#include "support/TemporaryFolder.h"
#include "table/commands/CopyPasteModify.h"
#include "table/commands/OpenTable.h"
#include "table/commands/SaveAndCloseTable.h"
#include "table/ui/GridView.h"

#include <clocale>
#include <locale>

namespace rv52::test {

// A user who types numbers with a point, as every text of the program shows them.
class TypingUser : public DismissingUser {
 public:
    std::string AskText(const InputBox&) override { return "+7.5%"; }
    std::string AskOpenPath(const FileDialog&) override { return "/open.tbl"; }
    std::string AskSavePath(const FileDialog&) override { return "/saved.tbl"; }
};

class LocaleTest : public WidgetTest {
 protected:
    ~LocaleTest() override {
        std::locale::global(std::locale::classic());
        QLocale::setDefault(QLocale::c());
        ::unsetenv("LOCPATH");
    }
    // German, made here, since a desktop need not have it.
    void SpeakGerman() {
        const auto command =
            "localedef --no-archive -i de_DE -f UTF-8 " + (folder.Path() / "de_DE.UTF-8").string();
        ASSERT_EQ(std::system(command.c_str()), 0);
        ::setenv("LOCPATH", folder.Path().c_str(), 1);
        ASSERT_NE(std::setlocale(LC_ALL, "de_DE.UTF-8"), nullptr);
        std::locale::global(std::locale("de_DE.UTF-8"));
        QLocale::setDefault(QLocale(QLocale::German));
        ASSERT_EQ(std::to_string(2.5).substr(0, 3), "2,5");
    }
    // Opens, modifies, saves and prints a table: every text that came of it, but for boxes and the date.
    std::string Everything() {
        TypingUser user;
        Session used({line, user, test.view, test.shell, test.files, test.settings, test.printer});
        QWidget window;
        const GridView grid(
            used, [](const auto& event) { event(); }, [&](const auto& command) { command(used); }, &window);
        test.files.contents["/open.tbl"] = ShippedFile("RV52_Max.dat") + "!RPMLimit: 6149.6\r\n";
        mnuOpenTable_Click(used);
        used.sheet.Select({{GridRow(1), GridColumn(1)}, {GridRow(8), GridColumn(16)}},
                          {GridRow(1), GridColumn(1)});
        mnuPopUpModify3D_Click(used);
        used.state.TableShown = true;
        mnuSaveTable_Click(used);
        mnuPrintTable_Click(used);

        std::string all = test.files.contents["/saved.tbl"];
        for (int cell = 0; cell < 8 * 16; ++cell)
            all += FromQt(grid.model()->index(cell / 16, cell % 16).data().toString()) + " ";
        for (const auto& job : test.printer.jobs)
            for (const auto& printed : job.lines)
                all += printed + "\n";
        test.printer.jobs.clear();
        return all;
    }

    TemporaryFolder folder;
};

TEST_F(LocaleTest, NumbersKeepTheirPointInAnyLanguage) {
    const auto usual = Everything();
    SpeakGerman();
    EXPECT_EQ(Everything(), usual);
    EXPECT_EQ(usual.find(','), std::string::npos);
    EXPECT_NE(usual.find("!RPMLimit: 6150"), std::string::npos);
    EXPECT_NE(usual.find('.'), std::string::npos);
}

}  // namespace rv52::test
