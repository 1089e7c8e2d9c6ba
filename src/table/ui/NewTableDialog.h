#pragma once

#include "table/commands/NewTable.h"

#include <QDialog>

#include <functional>

class QLabel;
class QPushButton;

namespace rv52 {

class SettingSlider;

// frmNewTable: the two switch settings as sliders, Update and OK. Its places are in twips, and fixed.
class NewTableDialog : public QDialog {
    Q_OBJECT

 public:
    using Dispatch = std::function<void(std::function<void()>)>;

    NewTableDialog(Session& session, NewTable& newTable, Dispatch dispatch, QWidget* parent = nullptr);

 protected:
    void showEvent(QShowEvent* event) override;

 private:
    struct Switch {
        SettingSlider* slider;
        QLabel* value;
    };
    // A frame with a slider and its value, under a caption.
    Switch AddSwitch(const char* suffix, const char* captionName, const QString& caption, double left);
    QPushButton* AddButton(const char* name, const QString& caption, double left,
                           std::function<void()> action);

    static void ShowSetting(const Switch& control, int setting);
    void sldAdvSlope_Change();
    void sldInitTiming_Change();
    void Create();

    Session& session_;
    NewTable& newTable_;
    Dispatch dispatch_;
    Switch timing_;
    Switch slope_;
};

}  // namespace rv52
