#pragma once

#include <QDir>

#include <vector>

class QImage;

namespace rv52 {

// A picture of README or of the help: one of the tour's, smaller, or a part of it. The tour draws two pixels
// for each of the window's.
struct DocumentPicture {
    const char* taken = nullptr;  // the tour's name for it
    const char* file = nullptr;   // in the project's folder
    double scale = 1;             // of the tour's picture
    double width = 1;             // the part around its middle that is wanted
    double height = 1;
};

// Every picture of the documents.
const std::vector<DocumentPicture>& DocumentPictures();

// The picture as the tour in this folder shows it; null when the tour has none of that name.
QImage Make(const DocumentPicture& picture, const QDir& tour);

// Whether both would look the same to a reader: of one size, and nowhere different but for how a machine's
// fonts and lines are smoothed.
bool LookAlike(const QImage& one, const QImage& other);

}  // namespace rv52
