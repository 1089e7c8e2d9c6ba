#pragma once

#include "app/state/WindowPorts.h"
#include "platform/Failure.h"
#include "platform/Storage.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace rv52::test {

// Chart, grid and main window as a recorder.
class RecordingView : public ChartAndGrid {
 public:
    void Show() override { shown = true; }
    void Hide() override { shown = false; }
    bool CommitEditor() override { return commit ? commit() : editorAccepts; }
    void SettleEditor() override { ++settled; }

    bool shown = false;
    bool editorAccepts = true;
    std::function<bool()> commit;  // in the place of editorAccepts
    int settled = 0;
};

class RecordingShell : public Shell {
 public:
    void SetCaption(const std::string& text) override { caption = text; }
    WindowSize InnerSize() const override { return size; }
    void Place(const TableLayout& placed) override {
        layout = placed;
        ++placements;
    }
    void ShowProgress(const std::string& text) override {
        progressShown = true;
        progress.push_back({text, {0}});
    }
    void SetProgress(int percent) override { progress.back().percents.push_back(percent); }
    void HideProgress() override { progressShown = false; }
    void RenewStatus() override {
        if (onStatus) onStatus();
    }
    void ShowPortPanel() override {}
    void HidePortPanel() override {}
    void ShowNewTable(NewTable& newTable) override {
        ++newTableDialogs;
        if (whileNewTableOpen) whileNewTableOpen(newTable);
    }
    void ShowModParams() override {}
    void OpenHelp(const std::string&) override {}
    void CloseWindows() override { closed = true; }

    struct Progress {
        std::string caption;
        std::vector<int> percents;
    };

    std::string caption;
    WindowSize size;
    TableLayout layout;
    int placements = 0;
    bool progressShown = false;
    std::vector<Progress> progress;
    std::function<void()> onStatus;
    int newTableDialogs = 0;
    std::function<void(NewTable&)> whileNewTableOpen;
    bool closed = false;
};

// Files in memory; the program's folder is "/program/".
class MemoryFiles : public Files {
 public:
    bool Exists(const std::string& path) const override { return contents.count(path) > 0; }
    std::string ReadWhole(const std::string& path) const override {
        ++reads;
        const auto file = contents.find(path);
        if (failReads || file == contents.end()) throw FileFailure("cannot read " + path);
        return file->second;
    }
    void ReplaceWhole(const std::string& path, const std::string& bytes) override {
        if (failWrites) throw FileFailure("disk full");
        contents[path] = bytes;
    }
    std::string ProgramFolder() const override { return folder; }

    std::map<std::string, std::string> contents;
    std::string folder = "/program/";
    bool failReads = false;
    bool failWrites = false;
    mutable int reads = 0;
};

class MemorySettings : public Settings {
 public:
    std::string Get(const std::string& section, const std::string& key,
                    const std::string& fallback) const override {
        if (failReads) throw FileFailure("settings cannot be read");
        const auto value = values.find(section + "/" + key);
        return value == values.end() ? fallback : value->second;
    }
    void Set(const std::string& section, const std::string& key, const std::string& value) override {
        if (failWrites) throw Failure("settings cannot be written");
        values[section + "/" + key] = value;
    }

    std::map<std::string, std::string> values;
    bool failReads = false;
    bool failWrites = false;
};

}  // namespace rv52::test
