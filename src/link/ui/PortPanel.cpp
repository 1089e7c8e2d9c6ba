#include "link/ui/PortPanel.h"

#include "link/commands/PortSetup.h"
#include "platform/ComDevices.h"
#include "platform/qt/ControlFont.h"
#include "platform/qt/QtText.h"
#include "platform/qt/Twips.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QEvent>
#include <QFileInfo>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>

namespace rv52 {

namespace {

// Over the chart, at a fixed place.
constexpr TwipRectangle kPortPanel{1200, 1440, 2655, 1932};

}  // namespace

PortPanel::PortPanel(const ComDevices& devices, const Actions& actions, QWidget* parent)
    : QGroupBox(QStringLiteral("Data Port Setup"), parent),
      devices_(devices),
      ports_(new QComboBox(this)),
      ok_(new QPushButton(QStringLiteral("OK"), this)) {
    setObjectName(QStringLiteral("fraPortSelect"));
    setGeometry(ToPixels(kPortPanel));
    setFont(PanelFont());
    setAutoFillBackground(true);

    auto* label = new QLabel(QStringLiteral("Port"), this);
    label->setObjectName(QStringLiteral("lblPort"));
    label->setBuddy(ports_);
    label->setGeometry(16, 38, 44, 26);
    ports_->setObjectName(QStringLiteral("cboPort"));
    ports_->setAccessibleName(QStringLiteral("Port"));
    ports_->view()->setAccessibleName(QStringLiteral("Ports"));
    ports_->setMaxVisibleItems(20);
    ports_->setGeometry(62, 38, 98, 26);
    for (int commPort = 1; commPort <= kHighestCommPort; ++commPort)
        ports_->addItem(ToQt(CommPortName(commPort)));
    ok_->setObjectName(QStringLiteral("cmdPortSelectOK"));
    ok_->setGeometry(51, 88, 75, 28);
    ok_->setAutoDefault(true);  // outside of dialogs a button takes Enter only so

    connect(ports_, &QComboBox::activated, this, [pick = actions.pick](int index) { pick(index); });
    connect(ok_, &QPushButton::clicked, this, [accept = actions.ok] { accept(); });
    installEventFilter(this);
    ports_->installEventFilter(this);
    hide();
}

void PortPanel::FocusList() {
    ports_->setFocus(Qt::ShortcutFocusReason);  // a reason for which styles show the focus
}

void PortPanel::Select(int commPort) {
    ports_->setCurrentIndex(commPort - 1);
    ports_->setToolTip(ports_->itemData(commPort - 1, Qt::ToolTipRole).toString());
}

// Adapters come and go: the list tells what is there whenever it is looked at. Enter in the list, which does
// not take it while it is closed, is OK, and so is Escape, which may have a transfer to stop besides.
bool PortPanel::eventFilter(QObject* watched, QEvent* event) {
    const bool looked = event->type() == QEvent::Show || event->type() == QEvent::MouseButtonPress ||
                        event->type() == QEvent::FocusIn;
    if (looked) MarkExistingDevices();
    if (event->type() == QEvent::KeyPress && watched == ports_) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Escape) ok_->click();
    }
    return QGroupBox::eventFilter(watched, event);
}

void PortPanel::MarkExistingDevices() {
    for (int commPort = 1; commPort <= kHighestCommPort; ++commPort) {
        const auto device = ToQt(devices_.DeviceOf(commPort));
        const bool exists = !device.isEmpty() && QFileInfo::exists(device);
        auto font = ports_->font();
        font.setBold(exists);
        ports_->setItemData(commPort - 1, font, Qt::FontRole);
        ports_->setItemData(commPort - 1,
                            device.isEmpty() ? QStringLiteral("No device of its own")
                            : exists         ? device
                                             : device + QStringLiteral(" (not there)"),
                            Qt::ToolTipRole);
    }
    ports_->setToolTip(ports_->itemData(ports_->currentIndex(), Qt::ToolTipRole).toString());
}

}  // namespace rv52
