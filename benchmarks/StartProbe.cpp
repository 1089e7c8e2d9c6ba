#include <QApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QTimer>
#include <QWidget>
#include <QWindow>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <set>
#include <string>

// Preloaded into an unchanged program, it writes when the program's windows appear, in microseconds of the
// monotonic clock, and how much memory the program then holds. It ends the program when the widget named by
// RV52_BENCH_UNTIL has been painted.

namespace {

constexpr int kSettled = 300;  // ms

void Say(const char* name, double value) {
    std::printf("%s %.1f\n", name, value);
}

void SayNow(const char* name) {
    Say(name, std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now().time_since_epoch())
                  .count());
}

// KiB of a line of /proc/self/status.
double Status(const char* key) {
    std::FILE* file = std::fopen("/proc/self/status", "r");
    if (file == nullptr) return 0;
    char line[256];
    double value = 0;
    while (std::fgets(line, sizeof line, file) != nullptr)
        if (std::strncmp(line, key, std::strlen(key)) == 0) value = std::atof(line + std::strlen(key));
    std::fclose(file);
    return value;
}

[[noreturn]] void End() {
    Say("memory", Status("VmRSS:"));
    std::fflush(stdout);
    std::_Exit(0);
}

class Probe : public QObject {
 public:
    explicit Probe(QObject* parent) : QObject(parent), until_(qEnvironmentVariable("RV52_BENCH_UNTIL")) {}

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Expose && watched->isWindowType()) Mapped();
        if (event->type() == QEvent::Hide && watched->objectName() == QLatin1String("frmCorvane_Splash"))
            SayNow("splash-closed");
        if (event->type() == QEvent::Paint && watched->objectName() == until_) Painted();
        return false;
    }

 private:
    void Mapped() {
        if (!std::exchange(mapped_, true)) SayNow("mapped");
    }

    // The paint is under way; it has reached the screen when the program is back at its events.
    void Painted() {
        if (std::exchange(painted_, true)) return;
        QTimer::singleShot(0, this, [] { SayNow("painted"); });
        QTimer::singleShot(kSettled, this, [] { End(); });
    }

    QString until_;
    bool mapped_ = false;
    bool painted_ = false;
};

void Install() {
    QCoreApplication::instance()->installEventFilter(new Probe(QCoreApplication::instance()));
}

}  // namespace

Q_COREAPP_STARTUP_FUNCTION(Install)
