#pragma once

#include "app/state/GridSheet.h"
#include "tour/Album.h"
#include "tour/Robot.h"

namespace rv52 {

class DesktopProgram;

// The guided tour: the real windows on a real serial device, from the splash through the first download to
// the verified upload. Leaves numbered pictures, the table file and the printed pages in a folder and prints
// a line for each of them and for each step.
class Tour {
 public:
    Tour(DesktopProgram& program, const QDir& folder);

    // Starts the program, and is true when everything was as expected. Throws Failure when the simulated
    // module does not start.
    bool Run();

 private:
    bool Start();
    void Download();
    void SaveAndOpen();
    void Upload();
    void VerifyFromShell();
    void EditVin();
    void Print();
    void Help();
    void About();
    void Leave();

    // Changing the table and its parameters: TourEditing.cpp.
    void EditCell();
    void ModifySelection();
    void DragPoint();
    void UndoAndRedo();
    void SetParameters();
    void MakeNewTable();

    // The cell that is changed by typing, RPM 1500 at MAP 22, and to what.
    static constexpr GridCell kEdited{GridRow(4), GridColumn(4)};
    static constexpr double kAdvance = 31.5;

    // Where the grid shows a cell, and the degrees of the table in it.
    QPoint PlaceOf(GridCell at) const;
    double Degrees(GridCell at) const;

    void Picture(const std::string& name);
    void PictureOf(QWidget& window, const char* name);
    // Takes one picture as soon as the progress panel of a transfer is some way along.
    void PictureProgress(const char* name);
    void Check(bool holds, const std::string& what);

    DesktopProgram& program_;
    Robot robot_;
    Album album_;
};

}  // namespace rv52
