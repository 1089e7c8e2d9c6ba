#include "app/ui/SplashWindow.h"

#include "app/Branding.h"
#include "app/state/Version.h"
#include "platform/Failure.h"
#include "platform/qt/QtText.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QFrame>
#include <QHBoxLayout>
#include <QImageReader>
#include <QLabel>
#include <QScreen>
#include <QTimer>

#include <algorithm>

namespace rv52 {

namespace {

constexpr QSize kLogoBox(168, 168);
constexpr int kBrandRoom = 340;
constexpr int kAroundBrand = 320;       // what stands left and right of the caption
constexpr double kLargestPoints = 300;  // a caption beyond that is on no screen

// The window has its own colours, so that a logo drawn on white sits on white on every desktop.
constexpr const char* kStyle =
    "#fraSplash { background: #ffffff; border: 1px solid #c9ced6; }"
    "#lblCompanyName { color: #23272e; }"
    "#linBrand { background: qlineargradient(x1:0, x2:1, stop:0 #e9501c, stop:0.55 #ffb347, stop:1 #ffffff); "
    "}"
    "#lblProductName { color: #23272e; } #lblVersion { color: #4b535f; } #lblNotice { color: #5d6672; }";

QLabel* AddLabel(QBoxLayout& column, const char* name, const char* text, double points) {
    auto* label = new QLabel(QString::fromLatin1(text));
    label->setObjectName(QString::fromLatin1(name));
    label->setTextFormat(Qt::PlainText);
    QFont font(QStringLiteral("Arial"));
    font.setPointSizeF(points);
    label->setFont(font);
    column.addWidget(label);
    return label;
}

// The largest size in the box, of which something is seen however thin the picture is.
QSize FittedInto(const QSize& box, const QSize& size) {
    return size.isEmpty() ? size : size.scaled(box, Qt::KeepAspectRatio).expandedTo({1, 1});
}

// A drawing is rendered at the size it is shown in, a larger picture is made smaller, a smaller one stays.
QPixmap ReadLogo(QImageReader& reader, double pixelRatio) {
    const QSize box = kLogoBox * pixelRatio;
    const bool drawing = reader.format().startsWith("svg");
    if (drawing) reader.setScaledSize(FittedInto(box, reader.size()));
    auto image = reader.read();
    if (!drawing && (image.width() > box.width() || image.height() > box.height()))
        image = image.scaled(FittedInto(box, image.size()), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    image.setDevicePixelRatio(pixelRatio);
    return QPixmap::fromImage(image);
}

}  // namespace

SplashWindow::SplashWindow(std::chrono::milliseconds time)
    : QDialog(nullptr, Qt::Dialog | Qt::FramelessWindowHint), logo_(new QLabel), timer_(new QTimer(this)) {
    setObjectName(QStringLiteral("frmCorvane_Splash"));
    setWindowTitle(QStringLiteral("Corvane RV52"));
    auto* frame = new QFrame(this);
    frame->setObjectName(QStringLiteral("fraSplash"));
    frame->setStyleSheet(QString::fromLatin1(kStyle));
    logo_->setObjectName(QStringLiteral("imgLogo"));
    logo_->setAccessibleName(QStringLiteral("Logo"));
    logo_->setFixedSize(kLogoBox);
    logo_->setAlignment(Qt::AlignCenter);

    auto* texts = new QVBoxLayout;
    texts->setSpacing(4);
    texts->addStretch();
    brand_ = AddLabel(*texts, "lblCompanyName", kDefaultBrand, 48);
    auto* line = new QFrame;
    line->setObjectName(QStringLiteral("linBrand"));
    line->setFixedHeight(3);
    texts->addWidget(line);
    texts->addSpacing(14);
    AddLabel(*texts, "lblProductName", "Corvane RV52", 20);
    AddLabel(*texts, "lblVersion", (std::string("Version ") + kVersion).c_str(), 11);
    texts->addStretch();
    AddLabel(*texts, "lblNotice", kMakersNotice, 8);
    // A long brand makes the window wider, but never wider than the screen.
    brand_->setMaximumWidth(std::max(kBrandRoom, screen()->availableSize().width() - kAroundBrand));

    auto* row = new QHBoxLayout(frame);
    row->setContentsMargins(36, 32, 44, 24);
    row->setSpacing(32);
    row->addWidget(logo_, 0, Qt::AlignVCenter);
    row->addLayout(texts, 1);
    auto* whole = new QVBoxLayout(this);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->addWidget(frame);
    whole->setSizeConstraint(QLayout::SetFixedSize);
    frame->setMinimumSize(620, 300);

    timer_->setObjectName(QStringLiteral("tmrSplashUnload"));
    timer_->setSingleShot(true);
    timer_->setTimerType(Qt::PreciseTimer);
    timer_->setInterval(time);
    connect(timer_, &QTimer::timeout, this, &QDialog::accept);
}

void SplashWindow::Run(Session& session) {
    LoadSplash(session, *this);
    timer_->start();
    exec();
}

void SplashWindow::SetBrandText(const std::string& text) {
    brand_->setText(ToQt(text));
}

template <class Change>
void SplashWindow::ChangeBrandFont(Change&& change) {
    auto font = brand_->font();
    change(font);
    brand_->setFont(font);
}

void SplashWindow::SetBrandFont(const std::string& name) {
    ChangeBrandFont([&](QFont& font) { font.setFamily(ToQt(name)); });
}

void SplashWindow::SetBrandSize(double points) {
    ChangeBrandFont([&](QFont& font) { font.setPointSizeF(std::min(points, kLargestPoints)); });
}

void SplashWindow::SetBrandStyle(bool bold, bool italic) {
    ChangeBrandFont([&](QFont& font) {
        font.setBold(bold);
        font.setItalic(italic);
    });
}

void SplashWindow::LoadLogo(const std::string& path) {
    const auto file = ToQt(path);
    if (!QFileInfo(file).isFile())
        throw Failure("The logo " + path + " cannot be shown: there is no such file.");
    QImageReader reader(file);
    // What the picture is decides, not how its file is called.
    reader.setDecideFormatFromContent(true);
    const auto picture = ReadLogo(reader, devicePixelRatioF());
    if (picture.isNull())
        throw Failure("The logo " + path + " cannot be shown: " + FromQt(reader.errorString()) + ".");
    logo_->setPixmap(picture);
}

void SplashWindow::SetApplicationTitle(const std::string& title) {
    QCoreApplication::setApplicationName(ToQt(title));
}

}  // namespace rv52
