#include "SimulatedLine.h"

#include "platform/Line.h"
#include "platform/linux/ChildLife.h"
#include "platform/qt/QtText.h"

#include <QCoreApplication>

#include <stdexcept>
#include <unistd.h>

namespace rv52::bench {

SimulatedLine::SimulatedLine(TableType type, bool echo) {
    process_.setChildProcessModifier([parent = getpid()] { LiveAsLongAs(parent); });
    process_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process_.start(QCoreApplication::applicationDirPath() + QStringLiteral("/rv52_simulator"),
                   {QStringLiteral("--type"), ToQt(ToText(type)), QStringLiteral("--echo"),
                    echo ? QStringLiteral("on") : QStringLiteral("off"), QStringLiteral("--pace"),
                    QString::number(SerialSettings::kBitsPerSecond)});
    while (!process_.canReadLine())
        if (!process_.waitForReadyRead()) throw std::runtime_error("the simulated module does not start");
    device_ = FromQt(QString::fromLocal8Bit(process_.readLine()).trimmed());
}

SimulatedLine::~SimulatedLine() {
    process_.terminate();
    process_.waitForFinished();
}

}  // namespace rv52::bench
