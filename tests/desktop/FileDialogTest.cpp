#include "platform/qt/QtPrompts.h"
#include "platform/qt/Text.h"
#include "tour/Robot.h"

#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QMainWindow>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

namespace rv52 {
namespace {

const FileDialog kTables{"Title", "Advance table files (*.tbl)|*.tbl"};

// A home of its own, with a folder for documents and one for tables.
class FileDialogTest : public testing::Test {
 protected:
    FileDialogTest() : realHome_(qgetenv("HOME")) {
        qputenv("HOME", home_.path().toLocal8Bit());
        QDir(home_.path()).mkdir(QStringLiteral("Documents"));
        QDir(home_.path()).mkdir(QStringLiteral("tables"));
        window_.show();
    }
    ~FileDialogTest() override {
        qputenv("HOME", realHome_);
        EXPECT_TRUE(robot_.Done());
        for (const auto& problem : robot_.Problems())
            ADD_FAILURE() << problem;
    }

    std::string Path(const char* name) const { return FromQt(home_.filePath(QString::fromLatin1(name))); }

    // The folder that a dialog for opening starts in; it is cancelled.
    std::string StartOf(QtPrompts& prompts) {
        std::string folder;
        robot_.Expect("file dialog", [&](QWidget& modal) {
            folder = FromQt(dynamic_cast<QFileDialog&>(modal).directory().absolutePath());
            QTest::keyClick(&modal, Qt::Key_Escape);
        });
        EXPECT_EQ(prompts.AskOpenPath(kTables), "");
        return folder;
    }

    const QByteArray realHome_;
    QTemporaryDir home_;
    QMainWindow window_;
    Robot robot_{window_};
    QtPrompts prompts_;
};

TEST_F(FileDialogTest, StartsInTheDocumentsThenWhereItWasLastUsed) {
    EXPECT_EQ(StartOf(prompts_), Path("Documents"));
    robot_.ExpectFile(Path("tables/one.tbl"));
    EXPECT_EQ(prompts_.AskSavePath(kTables), Path("tables/one.tbl"));
    EXPECT_EQ(StartOf(prompts_), Path("tables"));
    EXPECT_EQ(StartOf(prompts_), Path("tables")) << "cancelling changes nothing";
    ASSERT_TRUE(QDir(home_.path()).rmdir(QStringLiteral("tables")));
    EXPECT_EQ(StartOf(prompts_), Path("Documents"));
    ASSERT_TRUE(QDir(home_.path()).rmdir(QStringLiteral("Documents")));
    EXPECT_EQ(StartOf(prompts_), FromQt(home_.path()));
}

TEST_F(FileDialogTest, AddsTheExtensionToABareNameAndLeavesEveryQuestionToTheProgram) {
    QFile existing(home_.filePath(QStringLiteral("tables/old.tbl")));
    ASSERT_TRUE(existing.open(QIODevice::WriteOnly));
    for (const auto& [typed, saved] :
         {std::pair("tables/new", "tables/new.tbl"), std::pair("tables/new.tbl", "tables/new.tbl"),
          std::pair("tables/new.txt", "tables/new.txt"), std::pair("tables/old", "tables/old.tbl"),
          std::pair("tables/old.tbl", "tables/old.tbl")}) {
        robot_.ExpectFile(Path(typed));
        EXPECT_EQ(prompts_.AskSavePath(kTables), Path(saved)) << typed;
    }
    robot_.Expect("file dialog", [](QWidget& dialog) {
        EXPECT_EQ(dialog.findChild<QLineEdit*>()->text(), QStringLiteral("RV52 Advance Chart.pdf"));
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    EXPECT_EQ(prompts_.AskSavePath({"Save Report", "PDF documents (*.pdf)|*.pdf", "RV52 Advance Chart.pdf"}),
              "");
    robot_.ExpectFile(Path("tables/missing.tbl"));
    EXPECT_EQ(prompts_.AskOpenPath(kTables), Path("tables/missing.tbl"));
}

}  // namespace
}  // namespace rv52
