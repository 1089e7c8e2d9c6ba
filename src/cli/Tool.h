#pragma once

#include "app/state/Session.h"
#include "cli/Options.h"
#include "platform/ComDevices.h"
#include "platform/NoPrinter.h"
#include "platform/linux/EndSignals.h"
#include "platform/qt/QtFiles.h"
#include "platform/qt/QtSettings.h"
#include "platform/qt/SerialLine.h"
#include "platform/qt/SimulatorProcess.h"

#include <string>
#include <utility>
#include <vector>

namespace rv52::cli {

// The ports of a program without a window. What the window would ask is answered by the options.

// A failure ends the procedure, a line condition the transfer, nothing is saved on the way. What was told is
// kept: it becomes the one line that the tool ends with.
class Answers : public Prompts {
 public:
    Answer Ask(const MessageBox& box) override;
    // What the option says; a text that is refused is asked for again, and then there is none.
    std::string AskText(const InputBox& box) override;
    std::string AskOpenPath(const FileDialog&) override { return {}; }
    std::string AskSavePath(const FileDialog&) override { return {}; }

    std::vector<std::string> told;
    std::string text;  // for the next question that wants one
};

class NoChartAndGrid : public ChartAndGrid {
 public:
    void Show() override {}
    void Hide() override {}
    bool CommitEditor() override { return true; }
    void SettleEditor() override {}
};

// The progress on standard error, if that is a terminal.
class Progress : public Shell {
 public:
    explicit Progress(bool quiet);
    bool Shown() const { return shown_; }

    void SetCaption(const std::string&) override {}
    WindowSize InnerSize() const override { return {}; }
    void Place(const TableLayout&) override {}
    void ShowProgress(const std::string& caption) override;
    void SetProgress(int percent) override;
    void HideProgress() override;
    void RenewStatus() override {}
    void ShowPortPanel() override {}
    void HidePortPanel() override {}
    void ShowNewTable(NewTable&) override {}
    void ShowModParams() override {}
    void OpenHelp(const std::string&) override {}
    void CloseWindows() override {}

 private:
    bool shown_;
    std::string caption_;
    int percent_ = -1;
};

// Files on disk, "-" being standard input and output.
class ToolFiles : public QtFiles {
 public:
    bool Exists(const std::string& path) const override;
    std::string ReadWhole(const std::string& path) const override;
    void ReplaceWhole(const std::string& path, const std::string& bytes) override;
    // From now on this is what reading path gives: standard input can be read only once.
    void Serve(const std::string& path, const std::string& content) { served_ = {path, content}; }

 private:
    std::pair<std::string, std::string> served_;
};

// The serial line, which remembers whether it could be opened: that is another ending than a silent module.
class ToolLine : public SerialLine {
 public:
    using SerialLine::SerialLine;
    void Open(int commPort) override;

    bool refused = false;
};

// One run: a session on these ports.
class Tool {
 public:
    explicit Tool(const Options& options);

    // Loads what the session needs beside the program; throws Failure when it is not there.
    void Start();
    // Chooses the module's line, once, starting a simulated module where the options ask for one.
    void ConnectModule();

    // Runs commands on the module behind the window's gate. A signal ends a read, and waits for programming
    // and its verify.
    void Run(const std::function<void(Session&)>& command);
    bool Interrupted() const { return interrupted_; }
    // What the window would have said, on one line.
    std::string Told() const;
    // "Com1 (/dev/ttyS0)".
    std::string Port() const;
    // A remark on standard error, unless none are wanted.
    void Remark(const std::string& text) const;

    const Options& options;
    ComDevices devices;
    Answers answers;
    ToolFiles files;
    ToolLine line{devices};

 private:
    void Signalled();

    NoChartAndGrid view_;
    Progress progress_;
    QtSettings settings_;
    NoPrinter printer_;
    SimulatorProcess simulator_;
    std::string noStoredPort_;  // why the port that the window has stored is not known
    bool connected_ = false;
    bool interrupted_ = false;

 public:
    Session session{Ports{line, answers, view_, progress_, files, settings_, printer_}};
};

}  // namespace rv52::cli
