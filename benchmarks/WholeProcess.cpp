#include "WholeProcess.h"

#include "platform/linux/ChildLife.h"

#include <QCoreApplication>
#include <QProcess>

#include <chrono>
#include <sstream>
#include <stdexcept>
#include <unistd.h>

namespace rv52::bench {

namespace {

constexpr int kPatience = 60000;  // ms

double MonotonicMicroseconds() {
    return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

}  // namespace

QString ProgramBeside(const char* name) {
    return QCoreApplication::applicationDirPath() + QLatin1Char('/') + QString::fromLatin1(name);
}

VirtualScreen::VirtualScreen() : server_(std::make_unique<QProcess>()) {
    server_->setChildProcessModifier([parent = getpid()] { LiveAsLongAs(parent); });
    server_->setStandardErrorFile(QProcess::nullDevice());
    server_->start(
        QStringLiteral("Xvfb"),
        {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-screen"), QStringLiteral("0"),
         QStringLiteral("2600x1200x24"), QStringLiteral("-nolisten"), QStringLiteral("tcp")});
    while (!server_->canReadLine())
        if (!server_->waitForReadyRead()) throw std::runtime_error("Xvfb does not start");
    display_ = QLatin1Char(':') + QString::fromLatin1(server_->readLine()).trimmed();
}

VirtualScreen::~VirtualScreen() {
    server_->terminate();
    server_->waitForFinished();
}

void VirtualScreen::Use() const {
    for (const auto& [name, value] : Variables())
        qputenv(name, value.toLocal8Bit());
}

QProcessEnvironment VirtualScreen::Environment() const {
    auto environment = QProcessEnvironment::systemEnvironment();
    for (const auto& [name, value] : Variables())
        environment.insert(QString::fromLatin1(name), value);
    return environment;
}

std::vector<std::pair<const char*, QString>> VirtualScreen::Variables() const {
    return {{"DISPLAY", display_},
            {"QT_QPA_PLATFORM", QStringLiteral("xcb")},
            {"LIBGL_ALWAYS_SOFTWARE", QStringLiteral("1")}};
}

std::map<std::string, double> LinesOf(const QString& program, const QStringList& arguments,
                                      const QProcessEnvironment& environment) {
    QProcess process;
    process.setChildProcessModifier([parent = getpid()] { LiveAsLongAs(parent); });
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    std::map<std::string, double> said{{"started", MonotonicMicroseconds()}};
    process.start(program, arguments);
    if (!process.waitForFinished(kPatience) || process.exitStatus() != QProcess::NormalExit ||
        process.exitCode() != 0)
        throw std::runtime_error("a program measured did not end well: " + program.toStdString());
    std::istringstream lines(process.readAllStandardOutput().toStdString());
    std::string name;
    for (double number = 0; lines >> name >> number;)
        said[name] = number;
    return said;
}

}  // namespace rv52::bench
