#pragma once

#include "platform/Prompts.h"

#include <QDialog>

class QLineEdit;

namespace rv52 {

// The one-line input box: prompt, answer, OK and Cancel.
class InputDialog : public QDialog {
 public:
    InputDialog(const InputBox& box, QWidget* parent);

    QString Text() const;

 private:
    QLineEdit* answer_;
};

}  // namespace rv52
