// The main of the window tests: the application object lives for the length
// of main, so that it is gone before the program's static objects, Qt's own
// among them, are destroyed.
#include <QApplication>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    // No display is needed, not even to list the tests.
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
