#pragma once

#include <QMenu>

#include <functional>

namespace rv52 {

struct Session;

// The grid's popup menu, "PopUp Edit 3D". Its shortcuts work where the grid has the focus.
class GridMenu : public QMenu {
    Q_OBJECT

 public:
    using RunCommand = std::function<void(std::function<void(Session&)>)>;

    GridMenu(Session& session, RunCommand runCommand, QWidget* grid);

    // Paste is offered from the first copy on; nothing takes it back.
    void OfferPaste();
    void ShowAt(const QPoint& screen);

 protected:
    // The items' captions mark no letter: their first one chooses them.
    void keyPressEvent(QKeyEvent* event) override;

 private:
    QAction* AddCommand(const QString& name, const QString& caption, void (*command)(Session&));

    Session& session_;
    RunCommand runCommand_;
    QAction* paste_;
};

}  // namespace rv52
