#include "platform/qt/QtSettings.h"

#include "platform/Failure.h"
#include "platform/qt/Text.h"

#include <QSettings>
#include <QStandardPaths>

namespace rv52 {

namespace {

QString StorePath() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/Corvane_RV52_Main.conf");
}

QString Name(const std::string& section, const std::string& key) {
    return ToQt(section + "/" + key);
}

}  // namespace

std::string QtSettings::Get(const std::string& section, const std::string& key,
                            const std::string& fallback) const {
    const QSettings store(StorePath(), QSettings::IniFormat);
    return FromQt(store.value(Name(section, key), ToQt(fallback)).toString());
}

void QtSettings::Set(const std::string& section, const std::string& key, const std::string& value) {
    QSettings store(StorePath(), QSettings::IniFormat);
    store.setValue(Name(section, key), ToQt(value));
    store.sync();
    if (store.status() != QSettings::NoError)
        throw Failure("The setting cannot be stored in " + FromQt(StorePath()) + ".");
}

}  // namespace rv52
