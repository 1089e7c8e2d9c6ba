#include "table/ui/NewTableDialog.h"

#include "app/state/Session.h"
#include "platform/qt/ControlFont.h"
#include "platform/qt/Twips.h"
#include "table/ui/SettingSlider.h"

#include <QFrame>
#include <QLabel>
#include <QPushButton>
#include <QScreen>

namespace rv52 {

namespace {

constexpr TwipRectangle kClient{0, 0, 3780, 3825};
constexpr double kTimingLeft = 120;
constexpr double kSlopeLeft = 1800;
constexpr double kFrameIndent = 240;  // a switch's frame stands this far right of its caption
constexpr TwipRectangle kValue{240, 240, 375, 375};
constexpr TwipRectangle kSlider{240, 600, 495, 1575};
constexpr double kUpdateLeft = 240;
constexpr double kOkLeft = 1920;

TwipRectangle CaptionAt(double left) {
    return {left, 120, 1455, 495};
}
TwipRectangle FrameAt(double left) {
    return {left + kFrameIndent, 600, 855, 2295};
}
TwipRectangle ButtonAt(double left) {
    return {left, 3120, 1095, 495};
}

QString Name(const char* prefix, const char* suffix) {
    return QString::fromLatin1(prefix) + QString::fromLatin1(suffix);
}

}  // namespace

NewTableDialog::NewTableDialog(Session& session, NewTable& newTable, Dispatch dispatch, QWidget* parent)
    : QDialog(parent),
      session_(session),
      newTable_(newTable),
      dispatch_(std::move(dispatch)),
      timing_(AddSwitch("InitTiming", "lblInitTmg", QStringLiteral("Initial Timing Switch Setting"),
                        kTimingLeft)),
      slope_(AddSwitch("AdvSlope", "lblAdvSlp", QStringLiteral("Advance Slope Switch Setting"), kSlopeLeft)) {
    setObjectName(QStringLiteral("frmNewTable"));
    setWindowTitle(QStringLiteral("Corvane RV52 - New Table"));
    setFont(FormFont());
    setFixedSize(ToPixels(kClient).size());
    AddButton("cmdUpdate", QStringLiteral("Update"), kUpdateLeft, [this] { Create(); });
    auto* ok = AddButton("cmdOK", QStringLiteral("OK"), kOkLeft, [this] {
        Create();
        accept();
    });
    ok->setDefault(true);

    connect(timing_.slider, &QSlider::valueChanged, this,
            [this] { dispatch_([this] { sldInitTiming_Change(); }); });
    connect(slope_.slider, &QSlider::valueChanged, this,
            [this] { dispatch_([this] { sldAdvSlope_Change(); }); });
    timing_.slider->setValue(kSwitchScale.last);
    slope_.slider->setValue(kSwitchScale.last);
    timing_.slider->setFocus();
}

// The window's frame is known only now.
void NewTableDialog::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    const auto place = screen()->geometry();
    move(place.center() - QPoint(frameGeometry().width() / 2, frameGeometry().height() / 2));
    setAttribute(Qt::WA_KeyboardFocusChange);  // the slider shows its focus before the first Tab
}

NewTableDialog::Switch NewTableDialog::AddSwitch(const char* suffix, const char* captionName,
                                                 const QString& caption, double left) {
    auto* label = new QLabel(caption, this);
    label->setObjectName(QString::fromLatin1(captionName));
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    label->setGeometry(ToPixels(CaptionAt(left)));

    auto* frame = new QFrame(this);
    frame->setObjectName(Name("fra", suffix));
    frame->setAccessibleName(caption);
    frame->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
    frame->setGeometry(ToPixels(FrameAt(left)));

    auto* value = new QLabel(frame);
    value->setObjectName(Name("lbl", suffix) + QStringLiteral("Val"));
    value->setTextFormat(Qt::PlainText);
    value->setAlignment(Qt::AlignHCenter | Qt::AlignVCenter);
    value->setGeometry(ToPixels(kValue));

    const auto name = QByteArray("sld") + suffix;
    auto* slider = new SettingSlider(name, caption, frame);
    slider->SetScale(kSwitchScale);
    slider->setTickPosition(QSlider::TicksRight);  // the handle under the value
    slider->setGeometry(ToPixels(kSlider));
    label->setBuddy(slider);
    return {slider, value};
}

QPushButton* NewTableDialog::AddButton(const char* name, const QString& caption, double left,
                                       std::function<void()> action) {
    auto* button = new QPushButton(caption, this);
    button->setObjectName(QString::fromLatin1(name));
    button->setGeometry(ToPixels(ButtonAt(left)));
    connect(button, &QPushButton::clicked, this, [this, action = std::move(action)] { dispatch_(action); });
    return button;
}

void NewTableDialog::ShowSetting(const Switch& control, int setting) {
    control.value->setText(QString::number(setting));
    control.slider->Tell(setting);
}

void NewTableDialog::sldAdvSlope_Change() {
    newTable_.AdvSlope = SettingAt(slope_.slider->value());
    ShowSetting(slope_, newTable_.AdvSlope);
}

void NewTableDialog::sldInitTiming_Change() {
    const int position = timing_.slider->value();
    const int stop = TimingSliderStop(session_.state.TableType, position);
    if (stop != position) return timing_.slider->setValue(stop);
    newTable_.InitTiming = SettingAt(position);
    ShowSetting(timing_, newTable_.InitTiming);
}

void NewTableDialog::Create() {
    CreateNewTable(session_, newTable_);
}

}  // namespace rv52
