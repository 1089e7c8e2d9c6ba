#include "platform/qt/HighContrast.h"

#include <QApplication>
#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>

#include <gtest/gtest.h>
#include <memory>

namespace rv52::test {
namespace {

bool CanBeSeen(QWidget& control) {
    control.setAttribute(Qt::WA_DontShowOnScreen);
    control.show();
    const auto picture = control.grab().toImage();
    const auto ground = control.palette().color(QPalette::Window);
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            if (Contrast(picture.pixelColor(x, y), ground) >= 3) return true;
    return false;
}

TEST(HighContrastTest, ControlsWithoutATextStandOutWhateverTheirState) {
    const auto usual = QApplication::palette();
    for (const auto& [ground, ink] : {std::pair(Qt::black, Qt::white), std::pair(Qt::white, Qt::black)}) {
        QApplication::setPalette(QPalette(ink, ground, ground, ground, ground, ink, ink, ground, ground));
        ServeHighContrast();
        const std::unique_ptr<QWidget> controls[] = {
            std::make_unique<QCheckBox>(), std::make_unique<QRadioButton>(), std::make_unique<QLineEdit>(),
            std::make_unique<QPushButton>(), std::make_unique<QSlider>()};
        for (const bool enabled : {true, false})
            for (const auto& control : controls) {
                control->setEnabled(enabled);
                EXPECT_TRUE(CanBeSeen(*control)) << control->metaObject()->className() << enabled;
            }
        QApplication::setStyle(QStringLiteral("fusion"));
    }
    QApplication::setPalette(usual);
}

}  // namespace
}  // namespace rv52::test
