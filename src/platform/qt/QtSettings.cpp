#include "platform/qt/QtSettings.h"

#include "platform/Failure.h"
#include "platform/SettingsText.h"
#include "platform/linux/ReplaceFile.h"
#include "platform/qt/QtFiles.h"
#include "platform/qt/QtText.h"

#include <QDir>
#include <QStandardPaths>

#include <filesystem>

namespace rv52 {

namespace {

namespace fs = std::filesystem;

QString StoreFolder() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
}

std::string StorePath() {
    return FromQt(StoreFolder()) + "/Corvane_RV52_Main.conf";
}

// Empty where there is no file; one that is there but cannot be looked at is not absent.
std::string StoreText() {
    std::error_code error;
    if (fs::status(StorePath(), error).type() == fs::file_type::not_found) return {};
    return QtFiles().ReadWhole(StorePath());
}

}  // namespace

std::string QtSettings::Get(const std::string& section, const std::string& key,
                            const std::string& fallback) const {
    const auto text = StoreText();
    if (!IsSettingsText(text))
        throw FileFailure("Cannot read " + StorePath() + ": It is not a settings file.");
    return SettingIn(text, section, key).value_or(fallback);
}

void QtSettings::Set(const std::string& section, const std::string& key, const std::string& value) {
    try {
        auto text = StoreText();
        // What is no settings file has been told of at start-up, and holds nothing that could be kept.
        if (!IsSettingsText(text)) text.clear();
        QDir().mkpath(StoreFolder());
        ReplaceFile(StorePath(), WithSetting(text, section, key, value));
    } catch (const FileFailure&) {
        throw Failure("The setting cannot be stored in " + StorePath() + ".");
    }
}

}  // namespace rv52
