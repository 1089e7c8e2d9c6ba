#include <QApplication>

#include <gtest/gtest.h>

// Window tests need no screen: the offscreen platform unless another one is asked for.
int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleTest(&argc, argv);
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
