#pragma once

#include "app/state/WindowPorts.h"
#include "platform/NoPrinter.h"
#include "platform/Prompts.h"
#include "platform/Storage.h"

namespace rv52::bench {

// The ports that a measurement leaves out. Boxes are dismissed as Escape does it, so whatever fails ends the
// procedure that is measured, whose outcome then tells.
struct Nobody : Prompts {
    Answer Ask(const MessageBox& box) override { return DismissAnswer(box.buttons); }
    std::string AskText(const InputBox&) override { return answer; }
    std::string AskOpenPath(const FileDialog&) override { return {}; }
    std::string AskSavePath(const FileDialog&) override { return {}; }

    std::string answer;
};

struct NoView : ChartAndGrid, Shell {
    void Show() override {}
    void Hide() override {}
    bool CommitEditor() override { return true; }
    void SettleEditor() override {}
    void SetCaption(const std::string&) override {}
    WindowSize InnerSize() const override { return {}; }
    void Place(const TableLayout&) override {}
    void ShowProgress(const std::string&) override {}
    void SetProgress(int) override {}
    void HideProgress() override {}
    void RenewStatus() override {}
    void ShowPortPanel() override {}
    void HidePortPanel() override {}
    void ShowNewTable(NewTable&) override {}
    void ShowModParams() override {}
    void OpenHelp(const std::string&) override {}
    void CloseWindows() override {}
};

struct NoFiles : Files {
    bool Exists(const std::string&) const override { return false; }
    std::string ReadWhole(const std::string&) const override { return {}; }
    void ReplaceWhole(const std::string&, const std::string&) override {}
    std::string ProgramFolder() const override { return {}; }
};

struct NoSettings : Settings {
    std::string Get(const std::string&, const std::string&, const std::string& fallback) const override {
        return fallback;
    }
    void Set(const std::string&, const std::string&, const std::string&) override {}
};

}  // namespace rv52::bench
