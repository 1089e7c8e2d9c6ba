#include "table/ui/GridMenu.h"

#include "app/state/Session.h"
#include "table/commands/CopyPasteModify.h"

#include <QKeyEvent>

namespace rv52 {

GridMenu::GridMenu(Session& session, RunCommand runCommand, QWidget* grid)
    : QMenu(tr("PopUp Edit 3D"), grid), session_(session), runCommand_(std::move(runCommand)) {
    setObjectName(QStringLiteral("mnuPopUpEdit3D"));
    setAccessibleName(title());
    auto* copy = AddCommand(QStringLiteral("mnuPopUpCopy3D"), tr("Copy"), mnuPopUpCopy3D_Click);
    copy->setShortcuts(QKeySequence::Copy);
    paste_ = AddCommand(QStringLiteral("mnuPopupPaste3D"), tr("Paste"), mnuPopupPaste3D_Click);
    paste_->setShortcuts(QKeySequence::Paste);
    paste_->setEnabled(false);
    AddCommand(QStringLiteral("mnuPopUpModify3D"), tr("Modify"), mnuPopUpModify3D_Click);
}

void GridMenu::OfferPaste() {
    if (!session_.state.CopyBuffer.empty()) paste_->setEnabled(true);
}

void GridMenu::ShowAt(const QPoint& screen) {
    if (isVisible()) return;
    OfferPaste();
    popup(screen);
}

void GridMenu::keyPressEvent(QKeyEvent* event) {
    for (auto* action : actions()) {
        const bool meant = !event->text().isEmpty() && action->isEnabled() &&
                           action->text().startsWith(event->text(), Qt::CaseInsensitive);
        if (!meant) continue;
        setActiveAction(action);
        QKeyEvent choose(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
        return QMenu::keyPressEvent(&choose);
    }
    QMenu::keyPressEvent(event);
}

QAction* GridMenu::AddCommand(const QString& name, const QString& caption, void (*command)(Session&)) {
    auto* action = addAction(caption);
    action->setObjectName(name);
    action->setShortcutContext(Qt::WidgetShortcut);
    connect(action, &QAction::triggered, this, [this, command] {
        runCommand_(command);
        OfferPaste();
    });
    parentWidget()->addAction(action);
    return action;
}

}  // namespace rv52
