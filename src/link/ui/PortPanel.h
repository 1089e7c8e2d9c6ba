#pragma once

#include <QGroupBox>

#include <functional>

class QComboBox;
class QPushButton;

namespace rv52 {

class ComDevices;

// The panel "Data Port Setup", fraPortSelect: the list of ports and OK.
class PortPanel : public QGroupBox {
 public:
    struct Actions {
        std::function<void(int index)> pick;  // an entry of the list, counted from 0
        std::function<void()> ok;
    };

    PortPanel(const ComDevices& devices, const Actions& actions, QWidget* parent);

    // Shows this port as the chosen one.
    void Select(int commPort);
    void FocusList();

 protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

 private:
    void MarkExistingDevices();

    const ComDevices& devices_;
    QComboBox* ports_;
    QPushButton* ok_;
};

}  // namespace rv52
