#include "UserActions.h"
#include "app/ui/SplashWindow.h"
#include "support/FailureOf.h"

#include <QElapsedTimer>
#include <QLabel>
#include <QTemporaryDir>
#include <QTimer>

#include <fstream>

namespace rv52::test {

// The logos as the program finds them, in a folder of its own on disk.
class SplashTest : public WidgetTest {
 protected:
    SplashTest() {
        test.files.folder = FromQt(folder.path()) + "/";
        for (const auto* name : {"Emberline_Logo.gif", "Emberline_Logo.svg"})
            std::ofstream(test.files.folder + name, std::ios::binary) << ShippedFile(name);
    }
    static QLabel& Label(const SplashWindow& splash, const char* name) { return Find<QLabel>(splash, name); }

    QTemporaryDir folder;
};

TEST_F(SplashTest, ShowsTheBrandForItsTimeWhateverIsPressed) {
    SplashWindow splash(std::chrono::milliseconds(60));
    bool seen = false;
    QTimer::singleShot(20, &splash, [&] {
        QTest::keyClick(&splash, Qt::Key_Escape);
        splash.close();
        seen = splash.isVisible() && splash.isModal();
    });
    QElapsedTimer time;
    time.start();
    splash.Run(session);
    EXPECT_TRUE(seen && !splash.isVisible());
    EXPECT_GE(time.elapsed(), 60);
    const auto& brand = Label(splash, "lblCompanyName");
    EXPECT_EQ(brand.text(), QStringLiteral("Emberline"));
    EXPECT_EQ(brand.font().toString().left(8), QStringLiteral("Arial,48"));
    EXPECT_TRUE(brand.font().bold() && brand.font().italic());
    EXPECT_FALSE(Label(splash, "imgLogo").pixmap(Qt::ReturnByValue).isNull());
    const SplashWindow shipped;
    const auto& usual = Find<QTimer>(shipped, "tmrSplashUnload");
    EXPECT_TRUE(usual.interval() == 4000 && usual.isSingleShot());
}

TEST_F(SplashTest, ShowsLogosOfEveryFormatAndFailsOnNoPicture) {
    QImage picture(400, 100, QImage::Format_RGB32);
    picture.fill(Qt::red);
    for (const auto* format : {"png", "jpg", "bmp"})
        ASSERT_TRUE(picture.save(folder.filePath(QStringLiteral("logo.") + QLatin1String(format)), format));
    std::ofstream(test.files.folder + "text.gif") << "no picture";
    SplashWindow splash;
    for (const auto* name : {"gone.gif", "text.gif", ""})
        EXPECT_NE(FailureOf([&] { splash.LoadLogo(test.files.folder + name); }), "") << name;
    for (const auto* name :
         {"logo.png", "logo.jpg", "logo.bmp", "Emberline_Logo.svg", "Emberline_Logo.gif"}) {
        EXPECT_TRUE(Label(splash, "imgLogo").pixmap(Qt::ReturnByValue).isNull());
        splash.LoadLogo(test.files.folder + name);
        EXPECT_EQ(Label(splash, "imgLogo").pixmap(Qt::ReturnByValue).deviceIndependentSize().width(), 168)
            << name;
        Label(splash, "imgLogo").clear();
    }
}

}  // namespace rv52::test
