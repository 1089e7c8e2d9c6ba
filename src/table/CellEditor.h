#pragma once

#include <QLineEdit>

namespace rv52 {

// The line in which a cell's text is typed. It says how the user wants to end; the grid decides.
class CellEditor : public QLineEdit {
    Q_OBJECT

 public:
    CellEditor(const QString& text, QWidget* parent);

    // Over a cell, opaque, and as tall and wide as its text needs, within its parent.
    void PlaceOver(const QRect& cell);

 Q_SIGNALS:
    // Enter, Tab, a key up or down, or the focus went elsewhere in the window. The cursor shall then go rows
    // down and columns to the right, as far as there are any.
    void Ended(int rows, int columns);
    void Abandoned();

 protected:
    void keyPressEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace rv52
