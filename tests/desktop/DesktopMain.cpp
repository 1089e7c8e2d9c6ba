#include "app/ui/Application.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

// Window tests need no screen: the offscreen platform unless another one is asked for. Settings go to a
// folder that goes away.
int main(int argc, char** argv) {
    const QTemporaryDir settings;
    qputenv("XDG_CONFIG_HOME", settings.path().toLocal8Bit());
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleTest(&argc, argv);
    const rv52::Application application(argc, argv);
    return RUN_ALL_TESTS();
}
