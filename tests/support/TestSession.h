#pragma once

#include "app/state/Session.h"
#include "support/Recorders.h"
#include "support/RecordingPrinter.h"
#include "support/ScriptedPrompts.h"
#include "support/ShippedFile.h"
#include "table/LimitTables.h"

#include <string>

namespace rv52::test {

// A session on recorders and scripts, with the shipped data files in its program folder.
struct TestSession {
    explicit TestSession(Line& line) : session(Ports{line, prompts, view, shell, files, settings, printer}) {
        for (const auto type : {TableType::RACE, TableType::EX})
            for (const auto name : {LimitFileName(type, Limit::Minimum), LimitFileName(type, Limit::Maximum),
                                    ChartTemplateFileName(type)})
                files.contents["/program/" + std::string(name)] = ShippedFile(std::string(name));
    }

    ScriptedPrompts prompts;
    RecordingView view;
    RecordingShell shell;
    MemoryFiles files;
    MemorySettings settings;
    RecordingPrinter printer;
    Session session;
};

}  // namespace rv52::test
