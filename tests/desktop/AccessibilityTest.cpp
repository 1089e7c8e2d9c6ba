#include "ProgramFixture.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAccessible>
#include <QAction>
#include <QDialogButtonBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QStandardPaths>

#include <set>

namespace rv52::test {

using Names = std::vector<std::string>;

// Everything in the accessibility tree of a window, each of it named.
class Tree {
 public:
    explicit Tree(QWidget& window) {
        Collect(QAccessible::queryAccessibleInterface(&window));
        for (auto* at : all_) {
            const auto name = at->text(QAccessible::Name);
            const auto* object = at->object();
            EXPECT_TRUE(NeedsNoName(*at) || !name.isEmpty()) << "role " << at->role();
            const bool called = qobject_cast<const QAbstractButton*>(object) != nullptr ||
                                qobject_cast<const QAction*>(object) != nullptr;
            EXPECT_FALSE(called && object->objectName().isEmpty()) << FromQt(name);
            CheckValue(*at, FromQt(name));
            EXPECT_FALSE(StartsDrags(object)) << FromQt(name);
        }
    }

    std::string Title() const { return FromQt(all_.front()->text(QAccessible::Name)); }
    Names Named(QAccessible::Role role) const {
        Names names;
        for (auto* at : all_)
            if (at->role() == role) names.push_back(FromQt(at->text(QAccessible::Name)));
        return names;
    }
    QAccessibleInterface& Of(const char* object) const {
        for (auto* at : all_)
            if (at->object() != nullptr && at->object()->objectName() == QLatin1String(object)) return *at;
        throw std::runtime_error("nothing is called " + std::string(object));
    }
    // Of the object called so.
    std::string Text(const char* object, QAccessible::Text kind = QAccessible::Name) const {
        return FromQt(Of(object).text(kind));
    }
    // "now of lowest to highest, by step", as a tool that reads the screen can say of what has a value.
    std::string Value(const char* object) const {
        auto* value = Of(object).valueInterface();
        if (value == nullptr) return "no value";
        const auto say = [](const QVariant& number) { return FromQt(number.toString()); };
        return say(value->currentValue()) + " of " + say(value->minimumValue()) + " to " +
               say(value->maximumValue()) + ", by " + say(value->minimumStepSize());
    }
    void SetValue(const char* object, int value) const {
        Of(object).valueInterface()->setCurrentValue(value);
    }
    bool Checked(const char* object) const { return Of(object).state().checked; }

 private:
    void Collect(QAccessibleInterface* at) {
        if (at == nullptr || !at->isValid()) return;
        all_.push_back(at);
        for (int child = 0; child < at->childCount(); ++child)
            Collect(at->child(child));
    }
    // A drag holds up everything else for as long as the button is down, a module that is programmed with it.
    static bool StartsDrags(const QObject* object) {
        if (const auto* list = qobject_cast<const QAbstractItemView*>(object)) return list->dragEnabled();
        const auto* line = qobject_cast<const QLineEdit*>(object);
        return line != nullptr && line->dragEnabled();
    }
    // A value is said as it is shown, and lies within what is said of its range.
    static void CheckValue(QAccessibleInterface& at, const std::string& name) {
        const auto* value = at.valueInterface();
        if (value == nullptr || at.role() == QAccessible::ScrollBar || at.state().invisible) return;
        EXPECT_EQ(at.text(QAccessible::Value), value->currentValue().toString()) << name;
        EXPECT_LE(value->minimumValue().toDouble(), value->currentValue().toDouble()) << name;
        EXPECT_GE(value->maximumValue().toDouble(), value->currentValue().toDouble()) << name;
    }
    // What only holds other things, or can be used without a name.
    static bool NeedsNoName(const QAccessibleInterface& at) {
        static const std::set<QAccessible::Role> containers{
            QAccessible::Client,      QAccessible::Pane, QAccessible::Border,    QAccessible::Splitter,
            QAccessible::LayeredPane, QAccessible::Grip, QAccessible::Separator, QAccessible::ScrollBar};
        return containers.contains(at.role()) ||
               (at.role() == QAccessible::StaticText && at.state().invisible) ||
               qobject_cast<QDialogButtonBox*>(at.object()) != nullptr;
    }

    std::vector<QAccessibleInterface*> all_;
};

class AccessibilityTest : public ProgramFixture {
 protected:
    void SetUp() override {
        Start();
        prompts.SetParent(&Window());
    }
    // What is in the next box, which is then dismissed.
    void InNextBox(const std::function<void(const Tree&)>& look) {
        robot_->Expect("box", [look](QWidget& modal) {
            look(Tree(modal));
            QTest::keyClick(&modal, Qt::Key_Escape);
        });
    }

    QtPrompts prompts;
};

TEST_F(AccessibilityTest, TheGridIsATableOfCellsWithTheirTexts) {
    for (const auto type : {TableType::RACE, TableType::EX, TableType::RACE}) {
        SCOPED_TRACE(ToText(type));
        AdvanceTable table(type);
        table.SetCell({Column(16), Row(table.RowCount())}, 27.75);
        ShowAs(Running(), table);
        const auto& sheet = Running().sheet;
        Names cells;
        Names pressures;
        for (int row = 1; row < sheet.RowCountWithHeader(); ++row) {
            pressures.push_back(sheet.Text({GridRow(row), GridColumn(0)}));
            for (int column = 1; column < sheet.ColumnCountWithHeader(); ++column)
                cells.push_back(sheet.Text({GridRow(row), GridColumn(column)}));
        }
        const Tree tree(Window());
        EXPECT_EQ(cells[15], "27.8");
        EXPECT_EQ(tree.Named(QAccessible::Table), Names{"Advance table"});
        EXPECT_EQ(tree.Named(QAccessible::Cell), cells);
        EXPECT_EQ(tree.Named(QAccessible::RowHeader), pressures);
        EXPECT_EQ(tree.Named(QAccessible::ColumnHeader).back(), "7500");
        EXPECT_EQ(tree.Text("VSFlexGrid1", QAccessible::Description), "MAP/RPM");
    }
}

TEST_F(AccessibilityTest, MenusAndPanelsAreNamed) {
    std::string menus;
    for (const auto* menu : Window().menuBar()->actions()) {
        menus += FromQt(menu->text()) + ":";
        for (const auto* item : menu->menu()->actions()) {
            menus += item->isSeparator() ? " -" : " " + FromQt(item->text()) + ",";
            EXPECT_TRUE(item->isEnabled());
        }
        menus += "\n";
    }
    EXPECT_EQ(menus,
              "&File: &New Table, &Open Table, &Close Table, - &Save Table, - &Print Table, Print Set&up..., "
              "- E&xit,\n"
              "&Edit: Edit &Module Parameters, Edit RV52A VIN,\n"
              "&Communications: &Download From EEPROM, &Upload To EEPROM, &Port Setup,\n"
              "&Help: &Contents, &About...,\n");
    Window().ShowPortPanel();
    Window().ShowProgress("Reading EEPROM");
    Window().SetProgress(42);
    const Tree tree(Window());
    for (const auto& [object, name] : {std::pair("mnuPrintSetup", "Print Setup..."),
                                       {"fraProgress1", "Reading EEPROM"},
                                       {"fraPortSelect", "Data Port Setup"},
                                       {"lblPort", "Port"},
                                       {"cmdPortSelectOK", "OK"}})
        EXPECT_EQ(tree.Text(object), name) << object;
    EXPECT_EQ(tree.Text("prgProgress1", QAccessible::Value), "42");
    EXPECT_EQ(tree.Text("cboPort", QAccessible::Value), "Com1");
    EXPECT_EQ(Tree(Part("mnuPopUpEdit3D")).Named(QAccessible::MenuItem), (Names{"Copy", "Paste", "Modify"}));
}

TEST_F(AccessibilityTest, AMessageIsALabelInPlainTextToTheLetter) {
    const std::string path = "/home/a tuner/" + std::string(300, 'p') + "/<b>&amp;</b> & co.tbl";
    InNextBox([&](const Tree& box) {
        EXPECT_EQ(box.Title(), "File Open");
        EXPECT_EQ(box.Named(QAccessible::StaticText), Names{path + "\nFile not found."});
        EXPECT_EQ(box.Named(QAccessible::Graphic), Names{"Warning"});
        EXPECT_EQ(box.Named(QAccessible::Button), (Names{"Retry", "Cancel"}));
        const auto& shown = Find<QLabel>(*QApplication::activeModalWidget(), "qt_msgbox_label");
        EXPECT_LT(shown.minimumSizeHint().width(), 1000) << "an endless word is broken for the eye";
        EXPECT_EQ(shown.textFormat(), Qt::PlainText);
    });
    prompts.Ask({path + "\r\nFile not found.", "File Open", Icon::Warning, Buttons::RetryCancel});
}

TEST_F(AccessibilityTest, TheDialogsAreNamed) {
    InNextBox([](const Tree& box) {
        EXPECT_EQ(box.Text("txtAnswer"), "Enter table type.");
        EXPECT_EQ(box.Text("txtAnswer", QAccessible::Value), "Race");
        EXPECT_EQ(box.Named(QAccessible::Button), (Names{"OK", "Cancel"}));
    });
    prompts.AskText({"Enter table type.", "New Table", "Race"});

    const FileDialog tables{"Open File", "Advance table files (*.tbl)|*.tbl"};
    for (const auto* action : {"Open", "Save"})
        InNextBox([action](const Tree& box) {
            EXPECT_EQ(box.Text("cmdOK"), action);
            EXPECT_EQ(box.Text("fileTypeCombo", QAccessible::Value), "Advance table files (*.tbl)");
        });
    prompts.AskOpenPath(tables);
    prompts.AskSavePath(tables);
    const auto settings = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    EXPECT_EQ(QDir(settings).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList())
        << "the toolkit's dialogs remember nothing";

    InNextBox([](const Tree& box) {
        EXPECT_EQ(box.Title(), "Printer Setup");
        // What a list is about is told by its label, in relation to it. Nothing is wrong: the last is hidden.
        EXPECT_EQ(box.Named(QAccessible::StaticText), (Names{"Printer", "Paper", "Tray", ""}));
        EXPECT_EQ(box.Named(QAccessible::ComboBox), (Names{"PDF document", "A4", "Automatic"}));
        EXPECT_EQ(box.Named(QAccessible::Button), (Names{"OK", "Cancel"}));
    });
    robot_->Choose("mnuFile", "mnuPrintSetup");
}

TEST_F(AccessibilityTest, TheParametersDialogSaysWhatItShowsAndCanBeSet) {
    auto& parameters = State().ModuleParameters;
    parameters.FixedLimFlag = parameters.FixedInitialTmgFlag = true;
    parameters.SelEEPROMTblFlag = false;
    parameters.RPMLimit = 5750;
    parameters.InitialTiming = -3;
    InNextBox([](const Tree& box) {
        EXPECT_EQ(box.Value("sldRPMLimit"), "5750 of 3000 to 9900, by 100");
        EXPECT_EQ(box.Value("sldInitTiming"), "-3 of -5 to 5, by 1");
        EXPECT_EQ(box.Value("sldRearOffset"), "0 of -5 to 5, by 1");
        EXPECT_EQ(box.Value("sldCrankRevs"), "0 of 0 to 3, by 1");
        EXPECT_TRUE(box.Checked("optFLASHAdvTable") && box.Checked("chkFixedRPMLimit"));
        EXPECT_FALSE(box.Checked("optEEPROMAdvTable") || box.Checked("chkTachEnable"));
        box.SetValue("sldRPMLimit", 6449);
        box.SetValue("sldInitTiming", 5);
        box.SetValue("sldCrankRevs", 100);
        EXPECT_EQ(box.Value("sldRPMLimit"), "6400 of 3000 to 9900, by 100");
    });
    robot_->Choose("mnuEdit", "mnuEditModParams");
    EXPECT_EQ(std::tuple(parameters.RPMLimit, parameters.InitialTiming, parameters.CrankRevs),
              std::tuple(6400, 5, 3));
}

TEST_F(AccessibilityTest, TheNewTableDialogSaysWhatItShowsAndCanBeSet) {
    robot_->ExpectInput("EX");
    InNextBox([](const Tree& box) {
        for (const auto* slider : {"sldInitTiming", "sldAdvSlope"})
            EXPECT_EQ(box.Value(slider), "0 of 0 to 9, by 1") << slider;
        box.SetValue("sldAdvSlope", 7);
        EXPECT_EQ(box.Value("sldAdvSlope"), "7 of 0 to 9, by 1");
        box.SetValue("sldInitTiming", 9);
        EXPECT_EQ(box.Value("sldInitTiming"), "5 of 0 to 9, by 1") << "where it ends for EX";
    });
    robot_->Choose("mnuFile", "mnuNewTable");
}

}  // namespace rv52::test
