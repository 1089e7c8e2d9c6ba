// Uses the program by the mouse and the keys of the display server that DISPLAY leads to, in which the
// desktop that the program runs on is a window at 0, 0: what a toolkit's own events cannot show, such as
// where a window is put, what grabs the mouse, and who has the keys.
//   real_seat FOLDER   the saved table goes to FOLDER
#include "app/ui/DesktopProgram.h"
#include "chart/ui/ChartView.h"
#include "chart/ui/QtPlane.h"
#include "platform/qt/QtText.h"
#include "table/ui/GridView.h"

#include <QApplication>
#include <QFile>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QWindow>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <thread>

namespace rv52 {
namespace {

using namespace std::chrono_literals;

// Stands beside the program: what it asks is answered between two events, whatever box is open.
class Seat {
 public:
    Seat(DesktopProgram& program, std::string folder)
        : program_(program), window_(program.Window()), folder_(std::move(folder)) {}

    // In the order in which a first user would; ends the program at the first thing that does not come.
    void Use() const {
        Await("the window fills the desktop", [&] {
            return window_.windowHandle()->isExposed() && window_.size() == window_.screen()->size();
        });
        Choose("mnuComm", "mnuDownload");
        AwaitBox("the firmware ID is told");
        Press("Return");
        Await("the table is shown",
              [&] { return Running().state.TableShown && QApplication::activeModalWidget() == nullptr; });
        CopyCell();
        DragPointAndUndo();
        Tooltip();
        Save();
        Choose("mnuFile", "mnuExit");
        AwaitBox("the question about the table");
        Press("alt+n");
        Await("the program has ended", [&] { return !window_.isVisible(); });
    }

 private:
    template <class Answer>
    Answer Ask(const std::function<Answer()>& question) const {
        Answer answer{};
        QMetaObject::invokeMethod(
            qApp, [&] { answer = question(); }, Qt::BlockingQueuedConnection);
        return answer;
    }

    void Await(const char* what, const std::function<bool()>& question) const {
        for (int look = 0; look < 100; ++look) {
            if (Ask<bool>(question)) {
                std::printf("seat: %s\n", what);
                return;
            }
            std::this_thread::sleep_for(50ms);
        }
        std::fprintf(stderr, "seat: not seen: %s\n", what);
        std::_Exit(1);  // from a box that was not foreseen, too
    }
    void AwaitBox(const char* what) const {
        Await(what, [] { return QApplication::activeModalWidget() != nullptr; });
    }

    static void Hand(const std::string& moves) {
        // Slowly enough for each move to be an event of its own.
        if (std::system(("xdotool " + moves).c_str()) != 0) std::fprintf(stderr, "seat: no xdotool\n");
        std::this_thread::sleep_for(100ms);
    }
    static void Press(const char* key) { Hand("key " + std::string(key)); }
    static std::string To(QPoint place) {
        return "mousemove " + std::to_string(place.x()) + " " + std::to_string(place.y());
    }

    // An item of a menu that opens.
    void Pick(const QMenu& menu, const char* name) const {
        auto* item = window_.findChild<QAction*>(QString::fromLatin1(name));
        Await(name, [&] { return menu.isVisible(); });
        const auto place =
            Ask<QPoint>([&] { return menu.actionGeometry(item).center() + menu.pos() - window_.pos(); });
        Hand(To(place) + " click 1");
    }
    // By the mouse alone: down the menu bar, and down the menu.
    void Choose(const char* menuName, const char* itemName) const {
        const auto* menu = window_.findChild<QMenu*>(QString::fromLatin1(menuName));
        const auto* bar = window_.menuBar();
        const auto place = Ask<QPoint>(
            [&] { return bar->mapTo(&window_, bar->actionGeometry(menu->menuAction()).center()); });
        Hand(To(place) + " click 1");
        Pick(*menu, itemName);
    }
    QPoint PlaceOf(GridCell at) const {
        return Ask<QPoint>([&] {
            const auto* grid = window_.findChild<GridView*>();
            const auto place = grid->visualRect(grid->model()->index(at.row - 1, at.column - 1)).center();
            return grid->viewport()->mapTo(&window_, place);
        });
    }
    const Session& Running() const { return program_.Running(); }

    void CopyCell() const {
        constexpr GridCell at{GridRow(2), GridColumn(3)};
        Hand(To(PlaceOf(at)) + " click 1");
        Hand(To(PlaceOf(at)) + " click 3");
        Pick(*window_.findChild<QMenu*>(QStringLiteral("mnuPopUpEdit3D")), "mnuPopUpCopy3D");
        Await("a cell is copied", [&] { return Running().state.CopyBuffer == Running().sheet.Text(at); });
    }
    void DragPointAndUndo() const {
        const auto before = Ask<double>([&] { return Degrees(); });
        auto* chart = window_.findChild<ChartView*>();
        const auto from = Ask<QPoint>(
            [&] { return chart->mapTo(&window_, ToQt(chart->Shown()->mesh.At(kPoint).at).toPoint()); });
        Hand(To(from) + " mousedown 1");
        Hand(To(from + QPoint(0, 10)));
        Hand(To(from + QPoint(0, 20)));
        Await("a point follows the mouse", [&] { return Degrees() < before; });
        Hand("mouseup 1");
        Await("and is let go", [&] { return Running().gesture.kind == ChartGesture::Kind::None; });
        Press("ctrl+z");
        Await("the drag is undone", [&] { return Degrees() == before; });
    }
    void Tooltip() const {
        const auto place = PlaceOf({GridRow(4), GridColumn(5)});
        Hand(To(place));
        Hand(To(place + QPoint(2, 1)));
        Await("a tooltip", [] {
            return std::ranges::any_of(QApplication::topLevelWidgets(), [](const QWidget* widget) {
                return widget->inherits("QTipLabel") && widget->isVisible();
            });
        });
    }
    void Save() const {
        const auto file = folder_ + "/seat.tbl";
        Choose("mnuFile", "mnuSaveTable");
        AwaitBox("the file dialog");
        Hand("type --delay 20 " + file);
        Press("Return");
        Await("the file is saved", [&] { return QFile::exists(ToQt(file)); });
    }
    double Degrees() const { return Running().table.Table().GetCell(kPoint); }

    static constexpr Cell kPoint{Column(9), Row(4)};

    DesktopProgram& program_;
    MainWindow& window_;
    const std::string folder_;
};

int Run(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: real_seat FOLDER\n", stderr);
        return 2;
    }
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    qputenv("XDG_CONFIG_HOME", argv[1]);
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    CommandLine options;
    options.simulate = TableType::RACE;
    DesktopProgram program(options);
    if (!program.Start(std::chrono::milliseconds(500))) return 1;
    std::thread user([&] {
        Seat(program, argv[1]).Use();
        QMetaObject::invokeMethod(qApp, &QCoreApplication::quit);
    });
    QApplication::exec();
    user.join();
    return 0;
}

}  // namespace
}  // namespace rv52

int main(int argc, char** argv) {
    return rv52::Run(argc, argv);
}
