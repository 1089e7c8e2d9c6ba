#include "app/SplashWindow.h"
#include "platform/Failure.h"
#include "platform/qt/Text.h"
#include "support/IdleLine.h"
#include "support/TestSession.h"

#include <QElapsedTimer>
#include <QImage>
#include <QLabel>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <fstream>
#include <gtest/gtest.h>

namespace rv52 {
namespace {

using namespace std::chrono_literals;

// The shipped files as the program finds them, in a folder of its own on disk.
class SplashTest : public testing::Test {
 protected:
    SplashTest() {
        Write("Emberline_Logo.gif", test::ShippedFile("Emberline_Logo.gif"));
        test_.files.folder = FromQt(folder_.path()) + "/";
    }

    std::string Path(const std::string& name) const { return test_.files.folder + name; }
    void Write(const std::string& name, const std::string& content) {
        std::ofstream(FromQt(folder_.filePath(ToQt(name))), std::ios::binary) << content;
    }
    static QLabel& Label(const SplashWindow& splash, const char* name) {
        return *splash.findChild<QLabel*>(QString::fromLatin1(name));
    }

    QTemporaryDir folder_;
    test::IdleLine line_;
    test::TestSession test_{line_};
};

TEST_F(SplashTest, ShowsTheBrandForItsTimeAndReturns) {
    constexpr auto kShort = 60ms;
    SplashWindow splash(kShort);
    bool seen = false;
    QTimer::singleShot(20, &splash, [&] {
        seen = splash.isVisible() && splash.isModal();
        QTest::keyClick(&splash, Qt::Key_Escape);
        splash.close();
        seen = seen && splash.isVisible();
    });
    QElapsedTimer time;
    time.start();
    splash.Run(test_.session);
    EXPECT_TRUE(seen);
    EXPECT_GE(time.elapsed(), kShort.count());
    EXPECT_FALSE(splash.isVisible());

    for (const auto& [label, text] :
         {std::pair("lblProductName", "Corvane RV52"), std::pair("lblVersion", "Version 8.1"),
          std::pair("lblCompanyName", "Emberline")})
        EXPECT_EQ(FromQt(Label(splash, label).text()), text);
    const auto font = Label(splash, "lblCompanyName").font();
    EXPECT_TRUE(font.family() == QStringLiteral("Arial") && font.pointSize() == 48);
    EXPECT_TRUE(font.bold() && font.italic());
    EXPECT_FALSE(Label(splash, "imgLogo").pixmap(Qt::ReturnByValue).isNull());
    EXPECT_EQ(QCoreApplication::applicationName(), QStringLiteral("Corvane_RV52_Splash"));
}

TEST_F(SplashTest, StaysFourSeconds) {
    const SplashWindow splash;
    const auto* timer = splash.findChild<QTimer*>(QStringLiteral("tmrSplashUnload"));
    EXPECT_TRUE(timer->interval() == 4000 && timer->isSingleShot());
}

TEST_F(SplashTest, ShowsLogosOfEveryFormatAndFailsOnNoPicture) {
    QImage picture(400, 100, QImage::Format_RGB32);
    picture.fill(Qt::red);
    for (const auto* format : {"png", "jpg", "bmp"})
        ASSERT_TRUE(picture.save(folder_.filePath(QStringLiteral("logo.") + QLatin1String(format)), format));
    Write("logo.svg", test::ShippedFile("Emberline_Logo.svg"));
    Write("text.gif", "no picture");
    SplashWindow splash;
    for (const auto* name : {"gone.gif", "text.gif", ""})
        EXPECT_THROW(splash.LoadLogo(Path(name)), Failure) << name;
    EXPECT_TRUE(Label(splash, "imgLogo").pixmap(Qt::ReturnByValue).isNull());
    for (const auto* name : {"logo.png", "logo.jpg", "logo.bmp", "logo.svg", "Emberline_Logo.gif"}) {
        splash.LoadLogo(Path(name));
        const auto shown = Label(splash, "imgLogo").pixmap(Qt::ReturnByValue).deviceIndependentSize();
        EXPECT_EQ(shown.width(), 168) << name;
        Label(splash, "imgLogo").clear();
    }
}

}  // namespace
}  // namespace rv52
