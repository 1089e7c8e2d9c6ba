#include "UserActions.h"
#include "platform/qt/FileIcons.h"
#include "platform/qt/QtPrompts.h"
#include "tour/Robot.h"

#include <QDir>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMessageBox>
#include <QTemporaryDir>

#include <filesystem>
#include <fstream>
#include <map>

namespace rv52::test {

// A home of its own, with a folder for documents and one for tables.
class PromptsTest : public testing::Test {
 protected:
    PromptsTest() : realHome(qgetenv("HOME")) {
        qputenv("HOME", home.path().toLocal8Bit());
        for (const auto* folder : {"Documents", "tables"})
            QDir(home.path()).mkdir(QString::fromLatin1(folder));
        window.show();
    }
    ~PromptsTest() override {
        qputenv("HOME", realHome);
        EXPECT_TRUE(robot.Done());
        for (const auto& problem : robot.Problems())
            ADD_FAILURE() << problem;
    }
    std::string Path(const std::string& name) const { return FromQt(home.filePath(ToQt(name))); }

    const QByteArray realHome;
    QTemporaryDir home;
    QMainWindow window;
    Robot robot{window};
    QtPrompts prompts;
};

TEST_F(PromptsTest, ButtonsStandAsTheyAreNamedAndDismissingIsTheSafeAnswer) {
    const std::string title = "Download From EEPROM, and then some more words";
    QFont bold;
    bold.setBold(true);
    const struct {
        Icon icon;
        Buttons buttons;
        std::string captions;  // from left to right; the default one in brackets
        Answer onReturn, onEscape;
        std::optional<Answer> usual = {};
    } cases[] = {
        {Icon::None, Buttons::Ok, "[OK]", Answer::Ok, Answer::Ok},
        {Icon::Information, Buttons::OkCancel, "[OK]Cancel", Answer::Ok, Answer::Cancel},
        {Icon::Warning, Buttons::RetryCancel, "[&Retry]Cancel", Answer::Retry, Answer::Cancel},
        {Icon::Warning, Buttons::YesNoCancel, "[&Yes]&NoCancel", Answer::Yes, Answer::Cancel},
        {Icon::None, Buttons::YesNoCancel, "&Yes[&No]Cancel", Answer::No, Answer::Cancel, Answer::No},
        {Icon::Critical, Buttons::AbortRetryIgnore, "[&Abort]&Retry&Ignore", Answer::Abort, Answer::Abort}};
    for (const auto& box : cases)
        for (const bool escape : {false, true}) {
            SCOPED_TRACE(box.captions);
            robot.Expect("box", [&](QWidget& modal) {
                std::map<int, std::string> captions;
                for (const auto* button : modal.findChildren<QPushButton*>()) {
                    const auto caption = FromQt(button->text());
                    captions[button->x()] = button->isDefault() ? "[" + caption + "]" : caption;
                }
                std::string all;
                for (const auto& [x, caption] : captions)
                    all += caption;
                EXPECT_EQ(all, box.captions);
                // The toolkit counts its icons as we do.
                EXPECT_EQ(static_cast<int>(dynamic_cast<QMessageBox&>(modal).icon()),
                          static_cast<int>(box.icon));
                EXPECT_GT(modal.width(), QFontMetrics(bold).horizontalAdvance(ToQt(title)) + 100);
                QTest::keyClick(&modal, escape ? Qt::Key_Escape : Qt::Key_Return);
            });
            EXPECT_EQ(prompts.Ask({"Text", title, box.icon, box.buttons, box.usual}),
                      escape ? box.onEscape : box.onReturn);
        }
}

TEST_F(PromptsTest, MarkedTextIsNotDraggedAway) {
    robot.Expect("box", [&](QWidget& modal) {
        auto& label = Find<QLabel>(modal, "qt_msgbox_label");
        label.setTextInteractionFlags(Qt::TextSelectableByMouse);  // as some desktops have it
        label.setSelection(0, static_cast<int>(label.text().size()));
        EXPECT_FALSE(DragsMarkedText(label, {20, label.height() / 2}));
        QTest::keyClick(&modal, Qt::Key_Escape);
    });
    prompts.Ask({"A text that is long enough to be marked", "Message", Icon::None, Buttons::Ok});
}

TEST_F(PromptsTest, FileDialogsStartWhereTheyWereLastUsed) {
    const FileDialog tables{"Title", "Advance table files (*.tbl)|*.tbl"};
    const auto start = [&] {
        std::string folder;
        robot.Expect("file dialog", [&](QWidget& modal) {
            folder = FromQt(dynamic_cast<QFileDialog&>(modal).directory().absolutePath());
            QTest::keyClick(&modal, Qt::Key_Escape);
        });
        EXPECT_EQ(prompts.AskOpenPath(tables), "");
        return folder;
    };
    EXPECT_EQ(start(), Path("Documents"));
    for (const auto* name : {"tables/old.tbl", "tables/two words.tbl"})
        std::ofstream(Path(name)) << "a table";
    // A bare name gets the extension; every question is left to the program.
    for (const auto& [typed, saved] : {std::pair("tables/new", "tables/new.tbl"),
                                       {"tables/new.txt", "tables/new.txt"},
                                       {"tables/old", "tables/old.tbl"},
                                       {"tables/old.tbl", "tables/old.tbl"}}) {
        robot.ExpectFile(Path(typed));
        EXPECT_EQ(prompts.AskSavePath(tables), Path(saved)) << typed;
    }
    for (const auto& [typed, opened] : {std::pair("tables/missing", "tables/missing"),
                                        {"tables/two words", "tables/two words.tbl"},
                                        {"tables/old.tbl", "tables/old.tbl"}}) {
        robot.ExpectFile(Path(typed));
        EXPECT_EQ(prompts.AskOpenPath(tables), Path(opened)) << typed;
    }
    EXPECT_EQ(start(), Path("tables"));
    EXPECT_EQ(start(), Path("tables")) << "cancelling changes nothing";
    std::filesystem::remove_all(Path("tables"));
    EXPECT_EQ(start(), Path("Documents"));
    std::filesystem::remove(Path("Documents"));
    EXPECT_EQ(start(), Path(""));

    robot.Expect("file dialog", [](QWidget& dialog) {
        EXPECT_EQ(dialog.findChild<QLineEdit*>()->text(), QStringLiteral("RV52 Advance Chart.pdf"));
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    EXPECT_EQ(prompts.AskSavePath({"Save Report", "PDF documents (*.pdf)|*.pdf", "RV52 Advance Chart.pdf"}),
              "");
}

TEST_F(PromptsTest, TheFileDialogTellsKindsOfFilesWithoutOpeningThem) {
    const FileIcons icons;
    // Whoever looked into the kernel's messages would not come back.
    for (const auto& [path, kind] : {std::pair("/", "Drive"),
                                     {"/dev", "Folder"},
                                     {"/proc/kmsg", "File"},
                                     {"/none/race.tbl", "TBL file"}}) {
        EXPECT_EQ(FromQt(icons.type(QFileInfo(QLatin1String(path)))), kind);
        EXPECT_FALSE(icons.icon(QFileInfo(QLatin1String(path))).isNull());
    }
}

}  // namespace rv52::test
