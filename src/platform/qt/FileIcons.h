#pragma once

#include <QFileIconProvider>

namespace rv52 {

// Icons and kinds of files from their names alone. Qt's own provider reads into every file that a file
// dialog lists, on the window's thread: one that does not answer, on a dead network drive for example, holds
// the whole program.
class FileIcons : public QFileIconProvider {
 public:
    using QFileIconProvider::icon;
    QIcon icon(const QFileInfo& info) const override;
    QString type(const QFileInfo& info) const override;
};

}  // namespace rv52
