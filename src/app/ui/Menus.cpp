#include "app/ui/Menus.h"

#include "app/HelpMenu.h"
#include "link/commands/PortSetup.h"
#include "link/commands/Vin.h"
#include "module/commands/Download.h"
#include "module/commands/ModParams.h"
#include "module/commands/Report.h"
#include "module/commands/Upload.h"
#include "table/commands/NewTable.h"
#include "table/commands/OpenTable.h"
#include "table/commands/SaveAndCloseTable.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>

#include <vector>

namespace rv52 {

namespace {

struct Item {
    const char* caption;  // nullptr: a separator
    const char* name;
    CommandFunction command = nullptr;  // nullptr: closes the main window
};

struct Menu {
    const char* caption;
    const char* name;
    std::vector<Item> items;
};

std::vector<Menu> MenuTable() {
    return {
        {"&File",
         "mnuFile",
         {{"&New Table", "mnuNewTable", mnuNewTable_Click},
          {"&Open Table", "mnuOpenTable", mnuOpenTable_Click},
          {"&Close Table", "mnuCloseTable", mnuCloseTable_Click},
          {nullptr, "mnuSep1"},
          {"&Save Table", "mnuSaveTable", mnuSaveTable_Click},
          {nullptr, "mnuSep2"},
          {"&Print Table", "mnuPrintTable", mnuPrintTable_Click},
          {"Print Set&up...", "mnuPrintSetup", mnuPrintSetup_Click},
          {nullptr, "mnuSep3"},
          {"E&xit", "mnuExit"}}},
        {"&Edit",
         "mnuEdit",
         {{"Edit &Module Parameters", "mnuEditModParams", mnuEditModParams_Click},
          {"Edit RV52A VIN", "mnuEditVIN", mnuEditVIN_Click}}},
        {"&Communications",
         "mnuComm",
         {{"&Download From EEPROM", "mnuDownload", mnuDownload_Click},
          {"&Upload To EEPROM", "mnuUpload", mnuUpload_Click},
          {"&Port Setup", "mnuPortSetup", mnuPortSetup_Click}}},
        {"&Help",
         "mnuHelp",
         {{"&Contents", "mnuHelpContents", mnuHelpContents_Click},
          {"&About...", "mnuAbout", mnuAbout_Click}}},
    };
}

}  // namespace

void FillMenuBar(QMenuBar& bar, const std::function<void(CommandFunction)>& run,
                 const std::function<void()>& exit) {
    bar.setObjectName(QStringLiteral("mnuBar"));
    bar.setAccessibleName(QStringLiteral("Menu bar"));
    for (const auto& menu : MenuTable()) {
        auto* shown = bar.addMenu(QString::fromLatin1(menu.caption));
        shown->setObjectName(QString::fromLatin1(menu.name));
        shown->setAccessibleName(shown->title().remove(QLatin1Char('&')));
        // In the menu bar a menu is an item of its own.
        shown->menuAction()->setObjectName(shown->objectName());
        for (const auto& item : menu.items) {
            auto* action = item.caption == nullptr ? shown->addSeparator()
                                                   : shown->addAction(QString::fromLatin1(item.caption));
            action->setObjectName(QString::fromLatin1(item.name));
            action->setMenuRole(QAction::NoRole);
            if (item.caption == nullptr) continue;
            if (item.command == nullptr)
                QObject::connect(action, &QAction::triggered, &bar, [exit] { exit(); });
            else
                QObject::connect(action, &QAction::triggered, &bar,
                                 [run, command = item.command] { run(command); });
        }
    }
}

}  // namespace rv52
