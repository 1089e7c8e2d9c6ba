#pragma once

#include "tour/Robot.h"

#include <QDir>

namespace rv52 {

class DesktopProgram;

// The guided tour: the real windows on a real serial device, from the splash through the first download to
// the verified upload. Leaves numbered pictures, the table file and the printed pages in a folder and prints
// a line for each step.
class Tour {
 public:
    Tour(DesktopProgram& program, const QString& folder);

    // Starts the program, and is true when everything was as expected. Throws Failure when the simulated
    // module does not start.
    bool Run();

 private:
    bool Start();
    void Download();
    void EditCell();
    void ModifySelection();
    void SetParameters();
    void SaveAndOpen();
    void Upload();
    void Print();
    void Help();
    void About();
    void Leave();

    void Say(const std::string& line) const;
    void Picture(const char* name);
    void PictureOf(QWidget& window, const char* name);
    void Save(const QImage& picture, const char* name);
    // Takes one picture as soon as the progress panel of a transfer is some way along.
    void PictureProgress(const char* name);
    void Check(bool holds, const std::string& what);

    DesktopProgram& program_;
    Robot robot_;
    QDir folder_;
    int pictures_ = 0;
};

}  // namespace rv52
