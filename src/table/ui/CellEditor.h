#pragma once

#include "app/state/GridSheet.h"

#include <QAbstractItemView>
#include <QLineEdit>
#include <QPointer>

#include <functional>

namespace rv52 {

struct Session;

// The line in which a cell's text is typed. It says how the user wants to end; the grid decides.
class CellLineEdit : public QLineEdit {
    Q_OBJECT

 public:
    CellLineEdit(const QString& text, QWidget* parent);

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

// The one cell editor of a grid: when it may open, and how it ends. The core judges its text.
class CellEditor : public QObject {
    Q_OBJECT

 public:
    using Dispatch = std::function<void(std::function<void()>)>;

    CellEditor(Session& session, Dispatch dispatch, QAbstractItemView& view);

    bool IsOpen() const { return !editor_.isNull(); }

    // Opens on the grid's current data cell, if it can be edited and no command runs: with a text that was
    // typed, or with the cell's own text selected.
    void OpenTyping(const QString& typed);
    void OpenOnText();

    // As Enter would; false when the text is refused and the editor stays open.
    bool Commit();
    // The cell keeps its old text.
    void Abandon();
    // Without a question: as Commit where the text is accepted, else as Abandon.
    void Settle();

    // Back over its cell, wherever that is by now.
    void Place();

 Q_SIGNALS:
    // A text was accepted, and the cursor shall go rows down and columns to the right.
    void MoveOn(int rows, int columns);

 private:
    bool Open(const QString& text);
    void End(int rows, int columns);

    Session& session_;
    Dispatch dispatch_;
    QAbstractItemView& view_;
    QPointer<CellLineEdit> editor_;
    GridCell edited_;      // the cell that editor_ is open on
    bool asking_ = false;  // a refusal may be on screen
};

}  // namespace rv52
