#include "ProgramFixture.h"
#include "app/Branding.h"
#include "support/ShownTable.h"
#include "table/GridCursor.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QDialogButtonBox>
#include <QDir>
#include <QMenu>
#include <QStandardPaths>

#include <set>

namespace rv52::test {
namespace {

// What only holds other things, or can be used without a name.
bool NeedsNoName(const QAccessibleInterface& at) {
    static const std::set<QAccessible::Role> containers{
        QAccessible::Client,      QAccessible::Pane, QAccessible::Border,    QAccessible::Splitter,
        QAccessible::LayeredPane, QAccessible::Grip, QAccessible::Separator, QAccessible::ScrollBar};
    const bool hiddenText = at.role() == QAccessible::StaticText && at.state().invisible;
    return hiddenText || containers.contains(at.role()) ||
           qobject_cast<QDialogButtonBox*>(at.object()) != nullptr;
}

// What is used, and so must be within reach of the keyboard.
bool TakesKeys(const QAccessibleInterface& at) {
    static const std::set<QAccessible::Role> used{
        QAccessible::Button, QAccessible::CheckBox, QAccessible::RadioButton, QAccessible::EditableText,
        QAccessible::Slider, QAccessible::ComboBox, QAccessible::Table,       QAccessible::Tree};
    return used.contains(at.role()) && !at.state().invisible && !at.state().disabled;
}

using Interfaces = std::vector<QAccessibleInterface*>;

void Collect(QAccessibleInterface* at, Interfaces& all) {
    if (at == nullptr || !at->isValid()) return;
    all.push_back(at);
    for (int child = 0; child < at->childCount(); ++child)
        Collect(at->child(child), all);
}

// Everything in the accessibility tree of a window, each of it named, and focusable if it is used.
Interfaces TreeOf(QWidget& window) {
    Interfaces all;
    Collect(QAccessible::queryAccessibleInterface(&window), all);
    for (auto* at : all) {
        const auto* object = at->object();
        const auto what = object == nullptr ? std::string("part of a view")
                                            : std::string(object->metaObject()->className()) + " " +
                                                  FromQt(object->objectName());
        EXPECT_TRUE(NeedsNoName(*at) || !at->text(QAccessible::Name).isEmpty())
            << what << ", role " << at->role();
        EXPECT_TRUE(!TakesKeys(*at) || at->state().focusable) << what;
        const bool called = qobject_cast<const QAbstractButton*>(object) != nullptr ||
                            qobject_cast<const QAction*>(object) != nullptr;
        EXPECT_FALSE(called && object->objectName().isEmpty()) << what << FromQt(at->text(QAccessible::Name));
    }
    return all;
}

std::vector<std::string> NamesOf(const Interfaces& all, QAccessible::Role role) {
    std::vector<std::string> names;
    for (auto* at : all)
        if (at->role() == role) names.push_back(FromQt(at->text(QAccessible::Name)));
    return names;
}

QAccessibleInterface* Named(const Interfaces& all, const char* objectName) {
    for (auto* at : all)
        if (at->object() != nullptr && at->object()->objectName() == QLatin1String(objectName)) return at;
    ADD_FAILURE() << "nothing is called " << objectName;
    return all.front();
}

std::string TextOf(const Interfaces& all, const char* objectName,
                   QAccessible::Text kind = QAccessible::Name) {
    return FromQt(Named(all, objectName)->text(kind));
}

using Names = std::vector<std::string>;

class AccessibilityTest : public ProgramFixture {
 protected:
    // With a table of the type on screen.
    void StartWith(TableType type) {
        Start();
        AdvanceTable table(type);
        table.SetCell({16, table.RowCount()}, 27.75);
        ShowAs(Running(), table);
        prompts_.SetParent(&Window());
    }

    // What is in the box that ask brings; the box is then dismissed.
    void InBox(const std::function<void()>& ask, const std::function<void(QWidget&)>& look) {
        bool seen = false;
        robot_->Expect("box", [&](QWidget& modal) {
            seen = true;
            look(modal);
            QTest::keyClick(&modal, Qt::Key_Escape);
        });
        ask();
        EXPECT_TRUE(seen);
    }

    QtPrompts prompts_;
};

TEST_F(AccessibilityTest, TheGridIsATableOfCellsWithTheirTexts) {
    for (const auto type : {TableType::RACE, TableType::EX}) {
        StartWith(type);
        const auto all = TreeOf(Window());
        EXPECT_EQ(Named(all, "VSFlexGrid1")->role(), QAccessible::Table);
        const auto& sheet = Running().sheet;
        Names cells;
        Names pressures;
        for (int row = 1; row < sheet.RowCount(); ++row) {
            pressures.push_back(sheet.Text({row, 0}));
            for (int column = 1; column < sheet.ColumnCount(); ++column)
                cells.push_back(sheet.Text({row, column}));
        }
        EXPECT_EQ(cells[15], "27.8");
        EXPECT_EQ(NamesOf(all, QAccessible::Cell), cells);
        EXPECT_EQ(NamesOf(all, QAccessible::RowHeader), pressures);
        EXPECT_EQ(NamesOf(all, QAccessible::ColumnHeader).back(), "7500");
        EXPECT_EQ(TextOf(all, "VSFlexGrid1"), "Advance table");
        EXPECT_EQ(TextOf(all, "VSFlexGrid1", QAccessible::Description), "MAP/RPM");
    }
}

TEST_F(AccessibilityTest, MenusAndPanelsAreNamed) {
    StartWith(TableType::RACE);
    Window().ShowPortPanel();
    Window().ShowProgress("Reading EEPROM");
    Window().SetProgress(42);
    const auto all = TreeOf(Window());
    const auto items = NamesOf(all, QAccessible::MenuItem);
    EXPECT_EQ(items.size(), 4u + 14u);
    EXPECT_EQ(TextOf(all, "mnuPrintSetup"), "Print Setup...");
    EXPECT_EQ(TextOf(all, "fraProgress1"), "Reading EEPROM");
    EXPECT_EQ(TextOf(all, "prgProgress1", QAccessible::Value), "42");
    EXPECT_EQ(TextOf(all, "fraPortSelect"), "Data Port Setup");
    EXPECT_EQ(TextOf(all, "lblPort"), "Port");
    EXPECT_EQ(TextOf(all, "cboPort", QAccessible::Value), "Com1");
    EXPECT_EQ(TextOf(all, "cmdPortSelectOK"), "OK");
    EXPECT_EQ(NamesOf(all, QAccessible::ListItem).size(), 255u);

    auto* popup = Window().findChild<QMenu*>(QStringLiteral("mnuPopUpEdit3D"));
    ASSERT_NE(popup, nullptr);
    EXPECT_EQ(NamesOf(TreeOf(*popup), QAccessible::MenuItem), (Names{"Copy", "Paste", "Modify"}));
}

TEST_F(AccessibilityTest, AMessageIsALabelInPlainTextToTheLetter) {
    StartWith(TableType::RACE);
    const std::string path = "/home/a tuner/" + std::string(300, 'p') + "/<b>&amp;</b> & co.tbl";
    const MessageBox asked{path + "\r\nFile not found.", "File Open", Icon::Warning, Buttons::RetryCancel};
    InBox([&] { prompts_.Ask(asked); },
          [&](QWidget& box) {
              const auto all = TreeOf(box);
              EXPECT_EQ(FromQt(all.front()->text(QAccessible::Name)), "File Open");
              EXPECT_EQ(NamesOf(all, QAccessible::StaticText), Names{path + "\nFile not found."});
              EXPECT_EQ(NamesOf(all, QAccessible::Graphic), Names{"Warning"});
              EXPECT_EQ(TextOf(all, "cmdRetry"), "Retry");
              EXPECT_EQ(TextOf(all, "cmdCancel"), "Cancel");
              EXPECT_LT(box.width(), 1000) << "an endless word is broken for the eye";
          });
}

TEST_F(AccessibilityTest, TheInputBoxAndTheFileDialogsAreNamed) {
    StartWith(TableType::RACE);
    InBox(
        [&] {
            prompts_.AskText({"Enter table type.", "New Table", "Race"});
        },
        [](QWidget& box) {
            const auto all = TreeOf(box);
            EXPECT_EQ(TextOf(all, "txtAnswer"), "Enter table type.");
            EXPECT_EQ(TextOf(all, "txtAnswer", QAccessible::Value), "Race");
            EXPECT_EQ(NamesOf(all, QAccessible::Button), (Names{"OK", "Cancel"}));
        });
    const FileDialog tables{"Open File", "Advance table files (*.tbl)|*.tbl"};
    const char* action = "Open";
    const auto look = [&](QWidget& box) {
        const auto all = TreeOf(box);
        EXPECT_EQ(TextOf(all, "cmdOK"), action);
        EXPECT_EQ(TextOf(all, "fileTypeCombo", QAccessible::Value), "Advance table files (*.tbl)");
    };
    InBox([&] { prompts_.AskOpenPath(tables); }, look);
    action = "Save";
    InBox([&] { prompts_.AskSavePath(tables); }, look);
    const auto settings = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    EXPECT_EQ(QDir(settings).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList())
        << "the toolkit's dialogs remember nothing";
}

TEST_F(AccessibilityTest, TheDialogsOfTheMenusAreNamed) {
    StartWith(TableType::RACE);
    const auto look = [](const char* name) {
        return [name](QWidget& dialog) {
            EXPECT_EQ(dialog.objectName(), QLatin1String(name));
            EXPECT_GT(TreeOf(dialog).size(), 5u);
        };
    };
    InBox([this] { robot_->Choose("mnuEdit", "mnuEditModParams"); }, look("frmModParams"));
    robot_->ExpectBox("Save advance table", "cmdNo");
    robot_->ExpectInput("Race");
    InBox([this] { robot_->Choose("mnuFile", "mnuNewTable"); }, look("frmNewTable"));
}

TEST_F(AccessibilityTest, TheSplashTheHelpAndAboutAreNamed) {
    Start();
    SplashWindow splash;
    LoadSplash(Running(), splash);
    splash.show();
    EXPECT_EQ(NamesOf(TreeOf(splash), QAccessible::StaticText),
              (Names{"Emberline", "Corvane RV52", "Version 8.1", kMakersNotice}));
    splash.hide();

    robot_->Choose("mnuHelp", "mnuHelpContents");
    auto* help = Find("frmHelp");
    const auto all = TreeOf(*help);
    EXPECT_EQ(Named(all, "tvwContents")->role(), QAccessible::Tree);
    EXPECT_EQ(NamesOf(all, QAccessible::Button), (Names{"Back", "Forward", "Close"}));
    help->close();
    InBox([this] { robot_->Choose("mnuHelp", "mnuAbout"); },
          [](QWidget& box) {
              const auto texts = NamesOf(TreeOf(box), QAccessible::StaticText);
              ASSERT_EQ(texts.size(), 1u);
              EXPECT_TRUE(texts.front().starts_with("Emberline Corvane RV52 Version 8.10\n"));
          });
}

TEST_F(AccessibilityTest, TheCurrentPointIsToldByTheValueLabelAndTheStatusLine) {
    StartWith(TableType::RACE);
    MoveGridCursor(Running(), {1, 16});
    const auto all = TreeOf(Window());
    EXPECT_EQ(TextOf(all, "lblChartValue"), "27.8");
    EXPECT_EQ(TextOf(all, "lblStatus"), "RPM 7500, MAP 16: 27.75°, limit 45°   ·   Com1: /dev/ttyS0");
    for (const auto* told : {"lblChartValue", "lblStatus"})
        EXPECT_FALSE(Named(all, told)->state().invisible) << told;
}

// The grid has the keys when a table is shown and when the port panel has gone.
TEST_F(AccessibilityTest, TheKeyboardGetsEverywhereInTheMainWindow) {
    StartWith(TableType::RACE);
    const auto after = [](Qt::Key key) {
        if (key != Qt::Key_unknown) QTest::keyClick(QApplication::focusWidget(), key);
        return FromQt(QApplication::focusWidget()->objectName());
    };
    EXPECT_EQ(after(Qt::Key_unknown), "VSFlexGrid1");
    EXPECT_EQ(after(Qt::Key_Tab), "Chart3D1");
    EXPECT_EQ(after(Qt::Key_Tab), "VSFlexGrid1");
    robot_->Choose("mnuComm", "mnuPortSetup");
    EXPECT_EQ(after(Qt::Key_unknown), "cboPort");
    EXPECT_EQ(after(Qt::Key_Tab), "cmdPortSelectOK");
    EXPECT_EQ(after(Qt::Key_Return), "VSFlexGrid1");
    EXPECT_FALSE(Shown("fraPortSelect"));
    EXPECT_EQ(after(Qt::Key_Down), "VSFlexGrid1");
    EXPECT_EQ(Running().sheet.Cursor(), (GridCell{1, 1}));
}

}  // namespace
}  // namespace rv52::test
