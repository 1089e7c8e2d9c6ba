#include "module/ui/ModParamsControls.h"

#include "module/commands/ModParams.h"
#include "platform/qt/TwipFrame.h"
#include "platform/qt/Twips.h"
#include "table/ui/SettingSlider.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QDialog>
#include <QFocusEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>

#include <utility>

namespace rv52 {

namespace {

constexpr int kMargin = 120;

template <class Button>
Button* AddButton(const char* name, const QString& caption, QWidget& parent) {
    auto* button = new Button(caption, &parent);
    button->setObjectName(QLatin1String(name));
    return button;
}

void SetMargins(QLayout& layout, int twips) {
    const int pixels = ToPixels(twips);
    layout.setContentsMargins(pixels, pixels, pixels, pixels);
    layout.setSpacing(pixels);
}

}  // namespace

VssFrequencyEdit::VssFrequencyEdit(QWidget* parent) : QLineEdit(QStringLiteral("1424"), parent) {
    setObjectName(QStringLiteral("txtVSSFreq"));
}

void VssFrequencyEdit::focusOutEvent(QFocusEvent* event) {
    QLineEdit::focusOutEvent(event);
    switch (event->reason()) {
        case Qt::PopupFocusReason:
        case Qt::ActiveWindowFocusReason:
            return;  // a menu or a box, which gives the focus back
        case Qt::MouseFocusReason:
            waiting_ = true;
            return QCoreApplication::instance()->installEventFilter(this);
        default:
            Q_EMIT Left();
    }
}

void VssFrequencyEdit::Settle() {
    if (!std::exchange(waiting_, false)) return;
    QCoreApplication::instance()->removeEventFilter(this);
    Q_EMIT Left();
}

bool VssFrequencyEdit::eventFilter(QObject* watched, QEvent* event) {
    // Once the clicked control has had it.
    if (event->type() == QEvent::MouseButtonRelease) QTimer::singleShot(0, this, &VssFrequencyEdit::Settle);
    return QLineEdit::eventFilter(watched, event);
}

ModParamsControls::Setting::Setting(const char* name, const QString& title, const SliderScale& scale,
                                    double width, double height, QDialog& dialog) {
    const QByteArray plain(name);
    frame = new TwipFrame("fra" + plain, title, width, height, &dialog);
    value = new QLabel(frame);
    value->setObjectName(QLatin1String("lbl" + plain + "Val"));
    value->setTextFormat(Qt::PlainText);
    slider = new SettingSlider("sld" + plain, title, frame);
    slider->SetScale(scale);

    auto* column = new QVBoxLayout(frame);
    SetMargins(*column, 60);
    column->addWidget(value, 0, Qt::AlignHCenter);
    column->addWidget(slider, 1, Qt::AlignHCenter);
}

ModParamsControls::ModParamsControls(QDialog& dialog)
    : eepromTable(AddButton<QRadioButton>("optEEPROMAdvTable", QDialog::tr("EEPROM Advance Table"), dialog)),
      flashTables(AddButton<QRadioButton>("optFLASHAdvTable", QDialog::tr("FLASH Advance Tables"), dialog)),
      fixedInitTiming(
          AddButton<QCheckBox>("chkFixedInitTiming", QDialog::tr("Fixed Initial Timing"), dialog)),
      fixedRPMLimit(AddButton<QCheckBox>("chkFixedRPMLimit", QDialog::tr("Fixed RPM Limit"), dialog)),
      tachEnable(AddButton<QCheckBox>("chkTachEnable", QDialog::tr("Enable Tach Output"), dialog)),
      crankRevs("CrankRevs", QDialog::tr("Cranking Revs"), kCrankRevsScale, 1815, 2040, dialog),
      rearOffset("RearOffset", QDialog::tr("Rear Cyl Offset"), kRearOffsetScale, 1815, 2535, dialog),
      initTiming("InitTiming", QDialog::tr("Initial Timing"), kInitTimingScale, 1815, 2535, dialog),
      rpmLimit("RPMLimit", QDialog::tr("RPM Limit"), kRPMLimitScale, 1455, 6015, dialog),
      vssFreq(new VssFrequencyEdit(&dialog)),
      ok(AddButton<QPushButton>("cmdOK", QDialog::tr("OK"), dialog)) {
    rpmLimit.slider->setFixedHeight(ToPixels(5055));
    ok->setDefault(true);
    // Pressing OK with the mouse leaves the focus where it is until the click is complete.
    ok->setFocusPolicy(Qt::TabFocus);
    ok->setMinimumSize(ToPixels(1215), ToPixels(495));
    Compose(dialog);
    SetTabOrder();
}

void ModParamsControls::Compose(QDialog& dialog) {
    auto* timings = new QHBoxLayout;
    timings->setSpacing(ToPixels(kMargin));
    timings->addWidget(rearOffset.frame);
    timings->addWidget(initTiming.frame);
    timings->addStretch();

    auto* left = new QVBoxLayout;
    left->addWidget(ComposeOptions(dialog));
    left->addLayout(timings);
    left->addWidget(ComposeModuleFrame(dialog));
    left->addStretch();
    auto* right = new QVBoxLayout;
    right->addWidget(rpmLimit.frame, 0, Qt::AlignHCenter);
    right->addStretch();
    right->addWidget(ok, 0, Qt::AlignRight);

    auto* sides = new QHBoxLayout(&dialog);
    SetMargins(*sides, kMargin);
    sides->addLayout(left);
    sides->addStretch();
    sides->addLayout(right);
}

TwipFrame* ModParamsControls::ComposeOptions(QDialog& dialog) {
    auto* frame = new TwipFrame("fraOptions", QDialog::tr("Options"), 5055, 2655, &dialog);
    auto* choices = new QVBoxLayout;
    choices->addWidget(eepromTable);
    choices->addWidget(flashTables);
    choices->addWidget(fixedInitTiming);
    choices->addWidget(fixedRPMLimit);
    auto* row = new QHBoxLayout(frame);
    SetMargins(*row, kMargin);
    row->addLayout(choices);
    row->addStretch();
    row->addWidget(crankRevs.frame);
    return frame;
}

TwipFrame* ModParamsControls::ComposeModuleFrame(QDialog& dialog) {
    auto* frame = new TwipFrame("fraModule", QDialog::tr("RV52A Parameters"), 3972, 1692, &dialog);
    auto* label = new QLabel(QDialog::tr("VSS Frequency (Hz)  at 100 KPH"), frame);
    label->setObjectName(QStringLiteral("lblVSSFreq"));
    label->setTextFormat(Qt::PlainText);
    label->setBuddy(vssFreq);
    vssFreq->setAccessibleName(label->text());
    vssFreq->setFixedWidth(vssFreq->fontMetrics().horizontalAdvance(QStringLiteral("000000")) +
                           ToPixels(240));

    auto* row = new QHBoxLayout;
    row->addWidget(label);
    row->addWidget(vssFreq);
    row->addStretch();
    auto* column = new QVBoxLayout(frame);
    SetMargins(*column, kMargin);
    column->addLayout(row);
    column->addWidget(tachEnable);
    return frame;
}

void ModParamsControls::SetTabOrder() const {
    const QList<QWidget*> order{eepromTable,
                                flashTables,
                                fixedInitTiming,
                                fixedRPMLimit,
                                crankRevs.slider,
                                rearOffset.slider,
                                initTiming.slider,
                                vssFreq,
                                tachEnable,
                                rpmLimit.slider,
                                ok};
    for (qsizetype next = 1; next < order.size(); ++next)
        QWidget::setTabOrder(order[next - 1], order[next]);
}

}  // namespace rv52
