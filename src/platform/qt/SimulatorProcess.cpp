#include "platform/qt/SimulatorProcess.h"

#include "platform/Failure.h"
#include "platform/linux/ChildLife.h"
#include "platform/qt/QtText.h"

#include <QCoreApplication>

#include <cstdio>
#include <unistd.h>

namespace rv52 {

namespace {

constexpr int kStartTimeout = 5000;  // ms
constexpr int kEndTimeout = 2000;    // ms

}  // namespace

SimulatorProcess::~SimulatorProcess() {
    process_.terminate();
    if (!process_.waitForFinished(kEndTimeout)) process_.kill();
    process_.waitForFinished(kEndTimeout);
}

std::string SimulatorProcess::Start(std::string_view type) {
    process_.setChildProcessModifier([parent = getpid()] { LiveAsLongAs(parent); });
    process_.start(QCoreApplication::applicationDirPath() + QStringLiteral("/rv52_simulator"),
                   {QStringLiteral("--type"), ToQt(type)});
    while (!process_.canReadLine())
        if (!process_.waitForReadyRead(kStartTimeout))
            throw Failure("The simulated module cannot be started: " + Reason() + ".");
    const auto device = process_.readLine().trimmed();
    QObject::connect(&process_, &QProcess::readyReadStandardError, &process_,
                     [this] { std::fputs(process_.readAllStandardError().constData(), stderr); });
    return FromQt(QString::fromLocal8Bit(device));
}

std::string SimulatorProcess::Reason() {
    if (process_.error() == QProcess::FailedToStart) return FromQt(process_.errorString());
    if (process_.state() == QProcess::Running) return "it does not answer";
    const auto last = QString::fromLocal8Bit(process_.readAllStandardError()).trimmed();
    return last.isEmpty() ? "it ended at once" : FromQt(last);
}

}  // namespace rv52
