#include "app/ui/SplashWindow.h"
#include "fuzz/Screen.h"
#include "fuzz/Target.h"
#include "support/FailureOf.h"
#include "support/TemporaryFolder.h"

#include <QImage>
#include <QLabel>

#include <fstream>

namespace rv52::fuzz {

// The picture that a branding file may name, of any kind.
void Target(std::string_view input) {
    NeedApplication();
    static const test::TemporaryFolder folder;
    static auto& splash = *new SplashWindow;
    const auto path = (folder.Path() / "logo").string();
    std::ofstream(path, std::ios::binary) << input;
    const auto refusal = test::FailureOf([&] { splash.LoadLogo(path); });
    if (!refusal.empty()) {
        Require(!refusal.ends_with(": ."), "a refusal says why");
        return Require(QImage::fromData(QByteArrayView(input)).isNull(), "what is a picture is shown");
    }
    const auto shown = splash.findChild<QLabel*>(QStringLiteral("imgLogo"))->pixmap();
    Require(!shown.isNull() && shown.width() <= 168 && shown.height() <= 168, "a picture in its box");
    splash.grab();
}

}  // namespace rv52::fuzz
