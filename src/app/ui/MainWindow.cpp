#include "app/ui/MainWindow.h"

#include "app/Leaving.h"
#include "app/RunCommand.h"
#include "app/StatusText.h"
#include "app/WindowKeys.h"
#include "app/state/FormResize.h"
#include "app/state/Session.h"
#include "app/ui/HelpWindow.h"
#include "app/ui/Menus.h"
#include "app/ui/ProgressPanel.h"
#include "app/ui/StatusStrip.h"
#include "chart/ui/ChartView.h"
#include "link/commands/PortSetup.h"
#include "link/ui/PortPanel.h"
#include "module/ui/ModParamsDialog.h"
#include "platform/ComDevices.h"
#include "platform/qt/QtText.h"
#include "platform/qt/Twips.h"
#include "table/ui/GridView.h"
#include "table/ui/NewTableDialog.h"

#include <QApplication>
#include <QCloseEvent>
#include <QMenuBar>
#include <QShortcut>

namespace rv52 {

MainWindow::MainWindow() : client_(new QWidget(this)) {
    setObjectName(QStringLiteral("frmCorvane_Main"));
    setAttribute(Qt::WA_QuitOnClose);
    menuBar()->setNativeMenuBar(false);
    client_->setObjectName(QStringLiteral("client"));
    setCentralWidget(client_);
}

void MainWindow::Compose(Session& session, const ComDevices& devices) {
    session_ = &session;
    devices_ = &devices;
    const auto dispatch = [this](const std::function<void()>& handler) { Dispatch(handler); };
    const auto run = [this](const std::function<void(Session&)>& command) { Run(command); };
    FillMenuBar(*menuBar(), run, [this] { close(); });

    chart_ = new ChartView(session, dispatch, client_);
    grid_ = new GridView(session, dispatch, run, client_);
    Hide();
    status_ = new StatusStrip(client_);
    listening_ = {session.table.OnRedraw([this] { RenewStatus(); }),
                  session.sheet.OnChange([this](GridSheet::Change) { RenewStatus(); }),
                  session.drawing.OnKept([this] { TellDrawFailuresLater(); })};
    RenewStatus();
    progress_ = new ProgressPanel(client_);
    // A pick that was not taken, because a command is running, shows the port that holds.
    const auto pick = [this](int index) {
        Run([index](Session& running) { cboPort_Click(running, index); });
        ports_->Select(session_->state.CommPort);
    };
    ports_ = new PortPanel(devices, {pick, [run] { run(cmdPortSelectOK_Click); }}, client_);
    ports_->Select(session.state.CommPort);

    for (const auto& keys :
         {QKeySequence(Qt::CTRL | Qt::Key_Z), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z),
          QKeySequence(Qt::CTRL | Qt::Key_Y)}) {
        const bool undoes = keys == QKeySequence(Qt::CTRL | Qt::Key_Z);
        connect(new QShortcut(keys, this), &QShortcut::activated, this,
                [this, undoes] { UndoOrRedo(undoes ? UndoPressed : RedoPressed); });
    }

    // The client area has its design size; the menus stand above it.
    const auto width = ToPixels(kClientWidth);
    resize(width, ToPixels(kClientHeight) + menuBar()->heightForWidth(width));
    qApp->installEventFilter(this);
}

void MainWindow::Dispatch(const std::function<void()>& handler) {
    session_->drawing.Guard([&] { session_->steps.Procedure([&](Steps&) { handler(); }); }, [] {});
}

void MainWindow::Run(const std::function<void(Session&)>& command) {
    Dispatch([&] { RunCommand(*session_, command); });
}

// While a cell is edited these keys are its editor's; while a button is held, what it drags is not at rest.
void MainWindow::UndoOrRedo(void (*command)(Session&)) {
    if (grid_->Edits() || QGuiApplication::mouseButtons() != Qt::NoButton) return;
    Dispatch([&] { command(*session_); });
}

// Out of whatever is being changed or painted now. A command that runs tells of them at its end.
void MainWindow::TellDrawFailuresLater() {
    const auto tell = [this] {
        if (!session_->gate.Busy()) session_->drawing.Tell(session_->steps);
    };
    QMetaObject::invokeMethod(this, tell, Qt::QueuedConnection);
}

void MainWindow::SetCaption(const std::string& caption) {
    // Doubled, Qt's mark for unsaved changes stands for itself: a file may be named so.
    setWindowTitle(ToQt(caption).replace(QStringLiteral("[*]"), QStringLiteral("[*][*]")));
}

WindowSize MainWindow::InnerSize() const {
    return {static_cast<double>(client_->width() * kTwipsPerPixel),
            static_cast<double>(client_->height() * kTwipsPerPixel), isMinimized()};
}

void MainWindow::Place(const TableLayout& layout) {
    chart_->setGeometry(ToPixels(layout.chart));
    grid_->setGeometry(ToPixels(layout.grid));
    status_->PlaceIn(ToPixels(layout.status));
}

void MainWindow::ShowProgress(const std::string& caption) {
    progress_->Begin(ToQt(caption));
}
void MainWindow::SetProgress(int percent) {
    progress_->SetPercent(percent);
}
void MainWindow::HideProgress() {
    progress_->hide();
}

void MainWindow::RenewStatus() {
    const auto& state = session_->state;
    status_->Tell(ToQt(StatusText(state, session_->table, session_->sheet, session_->history,
                                  devices_->NameOf(state.CommPort))));
}

void MainWindow::ShowPortPanel() {
    ports_->Select(session_->state.CommPort);
    ports_->raise();
    ports_->show();
    ports_->FocusList();
}

void MainWindow::HidePortPanel() {
    grid_->setFocus(Qt::OtherFocusReason);
    ports_->hide();
}

void MainWindow::ShowNewTable(NewTable& newTable) {
    NewTableDialog(
        *session_, newTable, [this](const auto& handler) { Dispatch(handler); }, this)
        .exec();
}

void MainWindow::ShowModParams() {
    ModParamsDialog(
        *session_, [this](const auto& handler) { Dispatch(handler); }, this)
        .exec();
}

void MainWindow::OpenHelp(const std::string& path) {
    if (help_ == nullptr) help_ = new HelpWindow(this);
    help_->Open(path);
}

void MainWindow::CloseWindows() {
    closing_ = true;
    // This window was the first to open; beside it stands the help at most.
    for (auto* window : QApplication::topLevelWidgets())
        if (window != this && window->isVisible()) window->close();
    close();
}

void MainWindow::Show() {
    chart_->show();
    grid_->show();
    if (!ports_->isVisible()) grid_->setFocus(Qt::OtherFocusReason);
}

void MainWindow::Hide() {
    chart_->hide();
    grid_->hide();
}

void MainWindow::DrawChart(QPainter& painter, const QRectF& place) const {
    chart_->DrawOnPaper(painter, place);
}

bool MainWindow::CommitEditor() {
    return grid_->CommitEditor();
}
void MainWindow::SettleEditor() {
    grid_->SettleEditor();
}

// The exit sequence decides whether the window closes: it asks for closing once more when it does.
void MainWindow::closeEvent(QCloseEvent* event) {
    event->setAccepted(closing_);
    if (closing_) return;
    Dispatch([this] { RequestExit(*session_); });
    event->setAccepted(closing_);
}

void MainWindow::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::WindowStateChange && session_ != nullptr && isVisible())
        Dispatch([this] { WindowResized(*session_); });
}

// The window sees every key before the control that has the focus; the key is passed on unchanged. A key that
// repeats was pressed elsewhere: an Escape held down since it closed a box ends nothing here.
bool MainWindow::eventFilter(QObject* watched, QEvent* event) {
    if (watched == client_ && event->type() == QEvent::Resize) {
        Dispatch([this] { WindowResized(*session_); });
    } else if (event->type() == QEvent::MouseButtonPress) {
        const auto* widget = qobject_cast<QWidget*>(watched);
        if (widget != nullptr && widget->window() == this) Dispatch([this] { UserActed(*session_); });
    } else if (event->type() == QEvent::KeyPress) {
        const auto* key = static_cast<QKeyEvent*>(event);
        const auto* widget = qobject_cast<QWidget*>(watched);
        const bool here = widget != nullptr && widget->window() == this;
        if (!here || key->isAutoRepeat()) return QMainWindow::eventFilter(watched, event);
        Dispatch([this] { UserActed(*session_); });
        if (key->key() == Qt::Key_Escape) Dispatch([this] { EscapePressed(*session_); });
    }
    return QMainWindow::eventFilter(watched, event);
}

}  // namespace rv52
