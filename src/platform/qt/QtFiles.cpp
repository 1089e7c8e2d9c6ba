#include "platform/qt/QtFiles.h"

#include "platform/Failure.h"
#include "platform/linux/ReplaceFile.h"
#include "platform/qt/QtText.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

namespace rv52 {

namespace {

[[noreturn]] void FailToRead(const std::string& path, const QString& reason) {
    throw FileFailure("Cannot read " + path + ": " + FromQt(reason) + ".");
}

}  // namespace

bool QtFiles::Exists(const std::string& path) const {
    return QFileInfo::exists(ToQt(path));
}

std::string QtFiles::ReadWhole(const std::string& path) const {
    const QFileInfo info(ToQt(path));
    if (info.exists() && !info.isFile()) FailToRead(path, QStringLiteral("It is not a file"));
    QFile file(info.filePath());
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) FailToRead(path, file.errorString());
    const auto bytes = file.read(kLargest + 1);
    if (file.error() != QFileDevice::NoError) FailToRead(path, file.errorString());
    if (bytes.size() > kLargest) FailToRead(path, QStringLiteral("It has more than %1 bytes").arg(kLargest));
    return bytes.toStdString();
}

void QtFiles::ReplaceWhole(const std::string& path, const std::string& bytes) {
    ReplaceFile(path, bytes);
}

std::string QtFiles::ProgramFolder() const {
    return FromQt(QCoreApplication::applicationDirPath()) + "/";
}

}  // namespace rv52
