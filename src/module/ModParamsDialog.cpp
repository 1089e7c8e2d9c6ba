#include "module/ModParamsDialog.h"

#include "app/Session.h"
#include "module/VssFrequencyEdit.h"
#include "platform/qt/SettingSlider.h"
#include "platform/qt/Text.h"
#include "platform/qt/TwipFrame.h"
#include "platform/qt/Twips.h"

#include <QCheckBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QShowEvent>

namespace rv52 {

namespace {

constexpr int kWidth = 7095;
constexpr int kHeight = 7680;
constexpr int kMargin = 120;

QRadioButton* AddOption(const char* name, const QString& caption, QWidget* parent) {
    auto* option = new QRadioButton(caption, parent);
    option->setObjectName(QLatin1String(name));
    return option;
}

void SetMargins(QLayout& layout, int twips) {
    const int pixels = ToPixels(twips);
    layout.setContentsMargins(pixels, pixels, pixels, pixels);
    layout.setSpacing(pixels);
}

}  // namespace

ModParamsDialog::ModParamsDialog(Session& session, Dispatch dispatch, QWidget* parent)
    : QDialog(parent),
      session_(session),
      dispatch_(std::move(dispatch)),
      eepromTable_(AddOption("optEEPROMAdvTable", tr("EEPROM Advance Table"), this)),
      flashTables_(AddOption("optFLASHAdvTable", tr("FLASH Advance Tables"), this)),
      fixedInitTiming_(AddCheckBox("chkFixedInitTiming", tr("Fixed Initial Timing"))),
      fixedRPMLimit_(AddCheckBox("chkFixedRPMLimit", tr("Fixed RPM Limit"))),
      tachEnable_(AddCheckBox("chkTachEnable", tr("Enable Tach Output"))),
      crankRevs_(AddSetting("CrankRevs", tr("Cranking Revs"), kCrankRevsScale, 1815, 2040)),
      rearOffset_(AddSetting("RearOffset", tr("Rear Cyl Offset"), kRearOffsetScale, 1815, 2535)),
      initTiming_(AddSetting("InitTiming", tr("Initial Timing"), kInitTimingScale, 1815, 2535)),
      rpmLimit_(AddSetting("RPMLimit", tr("RPM Limit"), kRPMLimitScale, 1455, 6015)),
      vssFreq_(new VssFrequencyEdit(this)),
      ok_(new QPushButton(tr("OK"), this)) {
    setObjectName(QStringLiteral("frmModParams"));
    setWindowTitle(tr("Corvane RV52 - Edit Module Parameters"));
    Compose();
    SetTabOrder();
    dispatch_([this] { OpenModParams(session_); });
    ShowParameters();
    Connect();
}

void ModParamsDialog::done(int result) {
    // What was typed but never left stays unapplied.
    vssFreq_->disconnect(this);
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

ModParamsDialog::Setting ModParamsDialog::AddSetting(const char* name, const QString& title,
                                                     const SliderScale& scale, double width, double height) {
    const QByteArray plain(name);
    Setting setting{new TwipFrame("fra" + plain, title, width, height, this), nullptr, nullptr};
    setting.value = new QLabel(setting.frame);
    setting.value->setObjectName(QLatin1String("lbl" + plain + "Val"));
    setting.value->setTextFormat(Qt::PlainText);
    setting.slider = new SettingSlider("sld" + plain, title, setting.frame);
    setting.slider->SetPositions(scale.first, scale.last, scale.pageStep);

    auto* column = new QVBoxLayout(setting.frame);
    SetMargins(*column, 60);
    column->addWidget(setting.value, 0, Qt::AlignHCenter);
    column->addWidget(setting.slider, 1, Qt::AlignHCenter);
    return setting;
}

QCheckBox* ModParamsDialog::AddCheckBox(const char* name, const QString& caption) {
    auto* box = new QCheckBox(caption, this);
    box->setObjectName(QLatin1String(name));
    return box;
}

void ModParamsDialog::Compose() {
    rpmLimit_.slider->setFixedHeight(ToPixels(5055));
    ok_->setObjectName(QStringLiteral("cmdOK"));
    ok_->setDefault(true);
    // Pressing OK with the mouse leaves the focus where it is until the click is complete.
    ok_->setFocusPolicy(Qt::TabFocus);
    ok_->setMinimumSize(ToPixels(1215), ToPixels(495));

    auto* timings = new QHBoxLayout;
    timings->setSpacing(ToPixels(kMargin));
    timings->addWidget(rearOffset_.frame);
    timings->addWidget(initTiming_.frame);
    timings->addStretch();

    auto* left = new QVBoxLayout;
    left->addWidget(ComposeOptions());
    left->addLayout(timings);
    left->addWidget(ComposeModuleFrame());
    left->addStretch();
    auto* right = new QVBoxLayout;
    right->addWidget(rpmLimit_.frame, 0, Qt::AlignHCenter);
    right->addStretch();
    right->addWidget(ok_, 0, Qt::AlignRight);

    auto* sides = new QHBoxLayout(this);
    SetMargins(*sides, kMargin);
    sides->addLayout(left);
    sides->addStretch();
    sides->addLayout(right);
    Fit();
}

TwipFrame* ModParamsDialog::ComposeOptions() {
    auto* frame = new TwipFrame("fraOptions", tr("Options"), 5055, 2655, this);
    auto* choices = new QVBoxLayout;
    for (QWidget* choice :
         std::initializer_list<QWidget*>{eepromTable_, flashTables_, fixedInitTiming_, fixedRPMLimit_})
        choices->addWidget(choice);
    auto* row = new QHBoxLayout(frame);
    SetMargins(*row, kMargin);
    row->addLayout(choices);
    row->addStretch();
    row->addWidget(crankRevs_.frame);
    return frame;
}

TwipFrame* ModParamsDialog::ComposeModuleFrame() {
    auto* frame = new TwipFrame("fraModule", tr("RV52A Parameters"), 3972, 1692, this);
    auto* label = new QLabel(tr("VSS Frequency (Hz)  at 100 KPH"), frame);
    label->setObjectName(QStringLiteral("lblVSSFreq"));
    label->setTextFormat(Qt::PlainText);
    label->setBuddy(vssFreq_);
    vssFreq_->setAccessibleName(label->text());
    vssFreq_->setFixedWidth(vssFreq_->fontMetrics().horizontalAdvance(QStringLiteral("000000")) +
                            ToPixels(240));

    auto* row = new QHBoxLayout;
    row->addWidget(label);
    row->addWidget(vssFreq_);
    row->addStretch();
    auto* column = new QVBoxLayout(frame);
    SetMargins(*column, kMargin);
    column->addLayout(row);
    column->addWidget(tachEnable_);
    return frame;
}

void ModParamsDialog::SetTabOrder() {
    const QList<QWidget*> order{eepromTable_,
                                flashTables_,
                                fixedInitTiming_,
                                fixedRPMLimit_,
                                crankRevs_.slider,
                                rearOffset_.slider,
                                initTiming_.slider,
                                vssFreq_,
                                tachEnable_,
                                rpmLimit_.slider,
                                ok_};
    for (qsizetype next = 1; next < order.size(); ++next)
        setTabOrder(order[next - 1], order[next]);
}

void ModParamsDialog::ShowParameters() {
    const auto& parameters = session_.state.ModuleParameters;
    rearOffset_.frame->setVisible(session_.state.TableType != TableType::EX);
    (parameters.SelEEPROMTblFlag ? eepromTable_ : flashTables_)->setChecked(true);
    fixedRPMLimit_->setChecked(parameters.FixedLimFlag);
    rpmLimit_.frame->setVisible(parameters.FixedLimFlag);
    rpmLimit_.slider->setValue(kRPMLimitScale.PositionOf(parameters.RPMLimit));
    fixedInitTiming_->setChecked(parameters.FixedInitialTmgFlag);
    initTiming_.frame->setVisible(parameters.FixedInitialTmgFlag);
    initTiming_.slider->setValue(kInitTimingScale.PositionOf(parameters.InitialTiming));
    tachEnable_->setChecked(parameters.TachEnableFlag);
    rearOffset_.slider->setValue(kRearOffsetScale.PositionOf(parameters.RearOffset));
    crankRevs_.slider->setValue(kCrankRevsScale.PositionOf(parameters.CrankRevs));
    vssFreq_->setText(QString::number(parameters.VSSFreq));
    ShowValues();
}

void ModParamsDialog::ShowValues() {
    const auto& parameters = session_.state.ModuleParameters;
    const auto show = [](const Setting& setting, int value) {
        setting.value->setText(QString::number(value));
        setting.slider->setAccessibleDescription(setting.value->text());
    };
    show(rpmLimit_, parameters.RPMLimit);
    show(initTiming_, parameters.InitialTiming);
    show(rearOffset_, parameters.RearOffset);
    show(crankRevs_, parameters.CrankRevs);
}

void ModParamsDialog::Connect() {
    ConnectSliders();
    connect(eepromTable_, &QRadioButton::toggled, this, [this](bool chosen) {
        if (chosen) dispatch_([this] { optEEPROMAdvTable_Click(session_); });
    });
    connect(flashTables_, &QRadioButton::toggled, this, [this](bool chosen) {
        if (chosen) dispatch_([this] { optFLASHAdvTable_Click(session_); });
    });
    connect(fixedRPMLimit_, &QCheckBox::toggled, this, [this](bool ticked) {
        dispatch_([&] { chkFixedRPMLimit_Click(session_, ticked); });
        rpmLimit_.frame->setVisible(ticked);
        if (!ticked) rpmLimit_.slider->setValue(kRPMLimitScale.last);
        ShowValues();
    });
    connect(fixedInitTiming_, &QCheckBox::toggled, this, [this](bool ticked) {
        dispatch_([&] { chkFixedInitTiming_Click(session_, ticked); });
        initTiming_.frame->setVisible(ticked);
        if (!ticked) initTiming_.slider->setValue(kInitTimingScale.PositionOf(0));
        ShowValues();
    });
    connect(tachEnable_, &QCheckBox::toggled, this,
            [this](bool ticked) { dispatch_([&] { chkTachEnable_Click(session_, ticked); }); });
    connect(vssFreq_, &VssFrequencyEdit::Left, this, [this] {
        dispatch_([this] { txtVSSFreq_Validate(session_, FromQt(vssFreq_->text())); });
        vssFreq_->setText(QString::number(session_.state.ModuleParameters.VSSFreq));
    });
    connect(ok_, &QPushButton::clicked, this, &ModParamsDialog::Accept);
}

void ModParamsDialog::ConnectSliders() {
    const auto follow = [this](const Setting& setting, void (*change)(Session&, int)) {
        connect(setting.slider, &QSlider::valueChanged, this, [this, change](int position) {
            dispatch_([&] { change(session_, position); });
            ShowValues();
        });
    };
    follow(rpmLimit_, sldRPMLimit_Change);
    follow(rearOffset_, sldRearOffset_Change);
    follow(crankRevs_, sldCrankRevs_Change);
    connect(initTiming_.slider, &QSlider::valueChanged, this, [this](int position) {
        dispatch_([&] { position = sldInitTiming_Change(session_, position); });
        initTiming_.slider->setValue(position);
        ShowValues();
    });
}

void ModParamsDialog::Accept() {
    // The focus leaves the VSS box before the dialog closes.
    ok_->setFocus();
    accept();
}

void ModParamsDialog::Fit() {
    if (layout() != nullptr) setFixedSize(FittedSize(*this, kWidth, kHeight));
}

}  // namespace rv52
