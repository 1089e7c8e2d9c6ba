#pragma once

#include "app/state/Listeners.h"
#include "app/state/WindowPorts.h"

#include <QMainWindow>

#include <functional>
#include <vector>

namespace rv52 {

class ChartView;
class ComDevices;
class GridView;
class HelpWindow;
class PortPanel;
class ProgressPanel;
class StatusStrip;
struct Session;

// frmCorvane_Main: the menus, the chart above the grid, and two panels over them. It composes and forwards;
// what a command does is the core's business.
class MainWindow : public QMainWindow, public Shell, public ChartAndGrid {
 public:
    MainWindow();

    // Builds the window's parts on the session; once, before it is shown.
    void Compose(Session& session, const ComDevices& devices);

    // Shell
    void SetCaption(const std::string& caption) override;
    WindowSize InnerSize() const override;
    void Place(const TableLayout& layout) override;
    void ShowProgress(const std::string& caption) override;
    void SetProgress(int percent) override;
    void HideProgress() override;
    void RenewStatus() override;
    void ShowPortPanel() override;
    void HidePortPanel() override;
    void ShowNewTable(NewTable& newTable) override;
    void ShowModParams() override;
    void OpenHelp(const std::string& path) override;
    void CloseWindows() override;

    // ChartAndGrid
    void Show() override;
    void Hide() override;
    bool CommitEditor() override;
    void SettleEditor() override;

    // What the chart shows, as vectors, on a printer page.
    void DrawChart(QPainter& painter, const QRectF& place) const;

    // Runs a handler of the window's events, once: what its own steps do not ask about is told in the failure
    // box when the event is over, and no answer there repeats an event.
    void Dispatch(const std::function<void()>& handler);
    // Runs a command behind the gate.
    void Run(const std::function<void(Session&)>& command);

 protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

 private:
    void TellDrawFailuresLater();
    void UndoOrRedo(void (*command)(Session&));

    Session* session_ = nullptr;
    const ComDevices* devices_ = nullptr;
    QWidget* client_;
    ChartView* chart_ = nullptr;
    GridView* grid_ = nullptr;
    StatusStrip* status_ = nullptr;
    ProgressPanel* progress_ = nullptr;
    PortPanel* ports_ = nullptr;
    HelpWindow* help_ = nullptr;  // from when it is first asked for
    bool closing_ = false;
    std::vector<Listening> listening_;
};

}  // namespace rv52
