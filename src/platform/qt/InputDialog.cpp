#include "platform/qt/InputDialog.h"

#include "platform/qt/BoxText.h"
#include "platform/qt/QtText.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace rv52 {

InputDialog::InputDialog(const InputBox& box, QWidget* parent)
    : QDialog(parent), answer_(new QLineEdit(ToQt(box.defaultText), this)) {
    setObjectName(QStringLiteral("InputBox"));
    setWindowTitle(ToQt(box.title));

    auto* prompt = new QLabel(ForShowing(box.prompt), this);
    prompt->setObjectName(QStringLiteral("lblPrompt"));
    prompt->setTextFormat(Qt::PlainText);
    prompt->setBuddy(answer_);
    answer_->setObjectName(QStringLiteral("txtAnswer"));
    answer_->setAccessibleName(prompt->text());
    answer_->selectAll();
    answer_->setMinimumWidth(320);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("cmdOK"));
    buttons->button(QDialogButtonBox::Ok)->setDefault(true);
    buttons->button(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("cmdCancel"));
    for (auto* button : buttons->buttons())
        button->setIcon({});  // as in message boxes
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* column = new QVBoxLayout(this);
    column->addWidget(prompt);
    column->addWidget(answer_);
    column->addWidget(buttons);
    column->setSizeConstraint(QLayout::SetFixedSize);
    answer_->setFocus();
}

QString InputDialog::Text() const {
    return answer_->text();
}

}  // namespace rv52
