#include "app/ui/SimulatorProcess.h"

#include "platform/Failure.h"
#include "platform/linux/ChildLife.h"
#include "platform/qt/QtText.h"

#include <QCoreApplication>

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

std::string SimulatorProcess::Start(TableType type) {
    process_.setChildProcessModifier(EndWithParent);
    process_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process_.start(QCoreApplication::applicationDirPath() + QStringLiteral("/rv52_simulator"),
                   {QStringLiteral("--type"), ToQt(ToText(type))});
    while (!process_.canReadLine())
        if (!process_.waitForReadyRead(kStartTimeout))
            throw Failure("The simulated module cannot be started: " + FromQt(process_.errorString()) + ".");
    return FromQt(QString::fromLocal8Bit(process_.readLine()).trimmed());
}

}  // namespace rv52
