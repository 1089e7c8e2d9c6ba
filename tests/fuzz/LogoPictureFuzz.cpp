#include "app/ui/SplashWindow.h"
#include "fuzz/Screen.h"
#include "fuzz/Target.h"
#include "platform/Failure.h"
#include "support/TemporaryFolder.h"

#include <QImage>
#include <QLabel>

#include <fstream>

namespace rv52::fuzz {

namespace {

QByteArray AsBytes(std::string_view input) {
    return {input.data(), static_cast<qsizetype>(input.size())};
}

}  // namespace

// The picture that a branding file may name, of any kind.
void Target(std::string_view input) {
    NeedApplication();
    static const test::TemporaryFolder folder;
    static auto& splash = *new SplashWindow;
    const auto path = (folder.Path() / "logo").string();
    std::ofstream(path, std::ios::binary) << input;
    try {
        splash.LoadLogo(path);
        const auto shown = splash.findChild<QLabel*>(QStringLiteral("imgLogo"))->pixmap();
        Require(!shown.isNull() && shown.width() <= 168 && shown.height() <= 168, "a picture in its box");
        splash.grab();
    } catch (const Failure& failure) {
        Require(!std::string_view(failure.what()).ends_with(": ."), "a refusal says why");
        Require(QImage::fromData(AsBytes(input)).isNull(), "what is a picture is shown");
    }
}

}  // namespace rv52::fuzz
