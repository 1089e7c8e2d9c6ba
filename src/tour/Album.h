#pragma once

#include <QDir>

#include <string>

class QImage;

namespace rv52 {

// What the tour leaves behind: numbered pictures in a folder, and a line on the terminal for each of them and
// for each step.
class Album {
 public:
    // Makes the folder, and takes out of it what an earlier tour left.
    explicit Album(const QDir& folder);

    // The name may be any text: its letters and digits make the file's name. False when it cannot be saved.
    bool Add(const QImage& picture, const std::string& name);
    void Say(const std::string& line) const;

    // A file of the tour beside the pictures.
    std::string Path(const char* name) const;

 private:
    QDir folder_;
    int pictures_ = 0;
};

}  // namespace rv52
