#include "UserActions.h"
#include "app/ui/SplashWindow.h"

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
    const auto& brand = Find<QLabel>(splash, "lblCompanyName");
    EXPECT_EQ(brand.text(), QStringLiteral("Emberline"));
    EXPECT_EQ(brand.font().toString().left(8), QStringLiteral("Arial,48"));
    EXPECT_TRUE(brand.font().bold() && brand.font().italic());
    const SplashWindow shipped;
    EXPECT_EQ(Find<QTimer>(shipped, "tmrSplashUnload").interval(), 4000);
}

TEST_F(SplashTest, ShowsLogosOfEveryFormatAndFailsOnNoPicture) {
    ASSERT_TRUE(QImage(400, 100, QImage::Format_RGB32).save(folder.filePath(QStringLiteral("logo.jpg"))));
    std::ofstream(test.files.folder + "text.gif") << "no picture";
    SplashWindow splash;
    auto& logo = Find<QLabel>(splash, "imgLogo");
    for (const auto* name : {"gone.gif", "text.gif", ""})
        EXPECT_NE(FailureOf([&] { splash.LoadLogo(test.files.folder + name); }), "") << name;
    for (const auto* name : {"logo.jpg", "Emberline_Logo.svg", "Emberline_Logo.gif"}) {
        logo.clear();
        splash.LoadLogo(test.files.folder + name);
        EXPECT_EQ(logo.pixmap(Qt::ReturnByValue).deviceIndependentSize().width(), 168) << name;
    }
}

}  // namespace rv52::test
