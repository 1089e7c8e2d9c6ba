#include "platform/qt/FileIcons.h"

#include <QFileInfo>

namespace rv52 {

QIcon FileIcons::icon(const QFileInfo& info) const {
    if (info.isRoot()) return icon(Drive);
    return icon(info.isDir() ? Folder : File);
}

QString FileIcons::type(const QFileInfo& info) const {
    if (info.isRoot()) return QStringLiteral("Drive");
    if (info.isDir()) return QStringLiteral("Folder");
    const auto extension = info.suffix();
    return extension.isEmpty() ? QStringLiteral("File") : extension.toUpper() + QStringLiteral(" file");
}

}  // namespace rv52
