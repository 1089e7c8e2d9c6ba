#include "tour/DocumentPicture.h"

#include <QImage>

#include <cstdio>

namespace {

using rv52::DocumentPicture;

bool Refresh(const DocumentPicture& picture, const QImage& made, const QString& file) {
    if (made.save(file, "PNG", 0)) return true;  // 0: the smallest file
    std::fprintf(stderr, "%s: cannot be written\n", picture.file);
    return false;
}

bool Check(const DocumentPicture& picture, const QImage& made, const QString& file) {
    if (rv52::LookAlike(made, QImage(file))) return true;
    std::fprintf(stderr, "%s: not what the program shows; packaging/refresh-pictures makes it anew\n",
                 picture.file);
    return false;
}

}  // namespace

// rv52_pictures refresh|check TOUR PROJECT: the pictures of README and of the help, which are in the
// project's folder, against the tour whose pictures are in the folder TOUR.
int main(int argc, char** argv) {
    const std::string deed = argc == 4 ? argv[1] : "";
    if (deed != "refresh" && deed != "check") {
        std::fputs("usage: rv52_pictures refresh|check TOUR PROJECT\n", stderr);
        return 2;
    }
    const QDir tour(QString::fromLocal8Bit(argv[2]));
    const QDir project(QString::fromLocal8Bit(argv[3]));
    bool good = true;
    for (const auto& picture : rv52::DocumentPictures()) {
        const auto made = rv52::Make(picture, tour);
        const auto file = project.filePath(QString::fromLatin1(picture.file));
        if (made.isNull()) {
            std::fprintf(stderr, "%s: the tour has no picture \"%s\"\n", picture.file, picture.taken);
            good = false;
        } else {
            good = (deed == "refresh" ? Refresh : Check)(picture, made, file) && good;
        }
    }
    return good ? 0 : 1;
}
