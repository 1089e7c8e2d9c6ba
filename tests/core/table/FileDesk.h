#pragma once

#include "core/Desk.h"
#include "core/table/RandomTable.h"
#include "table/FileCommands.h"
#include "table/TableFile.h"

#include <functional>

namespace rv52::test {

inline const std::string kBase = "Corvane RV52 Version 8.1";

inline ModuleParameters SomeParameters() {
    return {.InitialTiming = -2, .RPMLimit = 7250, .FixedLimFlag = true};
}

// For the commands on table files. The caption tells whether a command set it.
class FileDesk : public Desk {
 protected:
    using Expectations = std::function<void()>;

    FileDesk() {
        caption = "as it was";
        session.sheet.SetUp(TableType::RACE);
    }

    // A table on screen, as a download leaves it.
    void ShowTable(const AdvanceTable& table) {
        session.table.Replace(table);
        session.state.TableType = table.Type();
        session.state.TableShown = test.view.shown = true;
    }

    void PutFile(const std::string& path, TableType type) {
        files[path] = FormatTableFile(RandomTable(type, 1), SomeParameters());
    }

    void ExpectOpeningQuestion(Answer answer) {
        prompts.ExpectQuestion("Save advance table before opening file?", "Open File", answer);
    }
    void ExpectClosingQuestion(Answer answer) {
        prompts.ExpectQuestion("Save advance table before closing file?", "Close File", answer);
    }

    // The commands, with the path that the user picks and the boxes expected after that.
    void Open(const std::string& path, const Expectations& expect = {}) {
        prompts.ExpectOpen(path);
        if (expect) expect();
        mnuOpenTable_Click(session);
    }
    void Save(const std::string& path, const Expectations& expect = {}) {
        prompts.ExpectSave(path);
        if (expect) expect();
        mnuSaveTable_Click(session);
    }

    void ExpectHidden(const std::string& under) {
        EXPECT_FALSE(session.state.TableShown || test.view.shown);
        EXPECT_EQ(caption, under);
    }
};

}  // namespace rv52::test
