#include "module/ui/ModParamsDialog.h"

#include "app/state/Session.h"
#include "module/commands/ModParams.h"
#include "platform/qt/QtText.h"
#include "platform/qt/TwipFrame.h"
#include "table/ui/SettingSlider.h"

#include <QCheckBox>
#include <QEvent>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QShowEvent>

namespace rv52 {

namespace {

// Of the client area, in twips.
constexpr int kWidth = 7095;
constexpr int kHeight = 7680;

}  // namespace

ModParamsDialog::ModParamsDialog(Session& session, Dispatch dispatch, QWidget* parent)
    : QDialog(parent), session_(session), dispatch_(std::move(dispatch)) {
    setObjectName(QStringLiteral("frmModParams"));
    setWindowTitle(tr("Corvane RV52 - Edit Module Parameters"));
    Fit();
    dispatch_([this] { OpenModParams(session_); });
    ShowParameters();
    // Only now: putting the controls where the parameters are is no change of them.
    ConnectOptions();
    ConnectFixedValues();
    ConnectSliders();
    ConnectVssFrequency();
    connect(controls_.ok, &QPushButton::clicked, this, &ModParamsDialog::PressOK);
}

void ModParamsDialog::done(int result) {
    // What was typed and left counts; what was never left stays unapplied.
    controls_.vssFreq->Settle();
    controls_.vssFreq->disconnect(this);
    QDialog::done(result);
}

void ModParamsDialog::changeEvent(QEvent* event) {
    QDialog::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) Fit();
}

void ModParamsDialog::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (event->spontaneous()) return;
    Fit();
    move(screen()->geometry().center() - frameGeometry().center() + frameGeometry().topLeft());
}

void ModParamsDialog::ShowParameters() {
    const auto& parameters = session_.state.ModuleParameters;
    controls_.rearOffset.frame->setVisible(session_.state.TableType != TableType::EX);
    (parameters.SelEEPROMTblFlag ? controls_.eepromTable : controls_.flashTables)->setChecked(true);
    controls_.fixedRPMLimit->setChecked(parameters.FixedLimFlag);
    controls_.rpmLimit.frame->setVisible(parameters.FixedLimFlag);
    controls_.rpmLimit.slider->setValue(kRPMLimitScale.PositionOf(parameters.RPMLimit));
    controls_.fixedInitTiming->setChecked(parameters.FixedInitialTmgFlag);
    controls_.initTiming.frame->setVisible(parameters.FixedInitialTmgFlag);
    controls_.initTiming.slider->setValue(kInitTimingScale.PositionOf(parameters.InitialTiming));
    controls_.tachEnable->setChecked(parameters.TachEnableFlag);
    controls_.rearOffset.slider->setValue(kRearOffsetScale.PositionOf(parameters.RearOffset));
    controls_.crankRevs.slider->setValue(kCrankRevsScale.PositionOf(parameters.CrankRevs));
    controls_.vssFreq->setText(QString::number(parameters.VSSFreq));
    ShowValues();
}

void ModParamsDialog::ShowValues() {
    const auto& parameters = session_.state.ModuleParameters;
    const auto show = [](const ModParamsControls::Setting& setting, int value) {
        setting.value->setText(QString::number(value));
        setting.slider->Tell(value);
    };
    show(controls_.rpmLimit, parameters.RPMLimit);
    show(controls_.initTiming, parameters.InitialTiming);
    show(controls_.rearOffset, parameters.RearOffset);
    show(controls_.crankRevs, parameters.CrankRevs);
}

void ModParamsDialog::ConnectOptions() {
    const auto choose = [this](QRadioButton* option, void (*click)(Session&)) {
        connect(option, &QRadioButton::toggled, this, [this, click](bool chosen) {
            if (!chosen) return;
            controls_.vssFreq->Settle();
            dispatch_([&] { click(session_); });
        });
    };
    choose(controls_.eepromTable, optEEPROMAdvTable_Click);
    choose(controls_.flashTables, optFLASHAdvTable_Click);
    connect(controls_.tachEnable, &QCheckBox::toggled, this,
            [this](bool ticked) { dispatch_([&] { chkTachEnable_Click(session_, ticked); }); });
}

void ModParamsDialog::ConnectFixedValues() {
    const auto fix = [this](QCheckBox* box, const ModParamsControls::Setting& setting, int neutral,
                            void (*click)(Session&, bool)) {
        connect(box, &QCheckBox::toggled, this, [=, this](bool ticked) {
            dispatch_([&] { click(session_, ticked); });
            setting.frame->setVisible(ticked);
            if (!ticked) setting.slider->setValue(neutral);
            ShowValues();
        });
    };
    fix(controls_.fixedRPMLimit, controls_.rpmLimit, kRPMLimitScale.last, chkFixedRPMLimit_Click);
    fix(controls_.fixedInitTiming, controls_.initTiming, kInitTimingScale.PositionOf(0),
        chkFixedInitTiming_Click);
}

void ModParamsDialog::ConnectSliders() {
    const auto follow = [this](const ModParamsControls::Setting& setting, void (*change)(Session&, int)) {
        connect(setting.slider, &QSlider::valueChanged, this, [this, change](int position) {
            dispatch_([&] { change(session_, position); });
            ShowValues();
        });
    };
    follow(controls_.rpmLimit, sldRPMLimit_Change);
    follow(controls_.rearOffset, sldRearOffset_Change);
    follow(controls_.crankRevs, sldCrankRevs_Change);
    connect(controls_.initTiming.slider, &QSlider::valueChanged, this, [this](int position) {
        dispatch_([&] { position = sldInitTiming_Change(session_, position); });
        controls_.initTiming.slider->setValue(position);
        ShowValues();
    });
}

void ModParamsDialog::ConnectVssFrequency() {
    connect(controls_.vssFreq, &VssFrequencyEdit::Left, this, [this] {
        dispatch_([this] { txtVSSFreq_Validate(session_, FromQt(controls_.vssFreq->text())); });
        controls_.vssFreq->setText(QString::number(session_.state.ModuleParameters.VSSFreq));
    });
}

void ModParamsDialog::PressOK() {
    // The focus leaves the VSS box before the dialog closes.
    controls_.ok->setFocus();
    accept();
}

void ModParamsDialog::Fit() {
    if (layout() != nullptr) setFixedSize(FittedSize(*this, kWidth, kHeight));
}

}  // namespace rv52
