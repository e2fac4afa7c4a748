// The main program of tests that show something. Without a display of the test's own they draw into memory.

#include <QApplication>
#include <QQuickWindow>

#include <gtest/gtest.h>

// What the address sanitizer asks for at its start (sanitizer/asan_interface.h). Qt keeps the pictures of its
// Image items in a cache of its own, which it doesn't empty at the end of a program that has seen a click. To
// tell those from leaks of ours would take whole stacks at every allocation, which makes these tests ten
// times slower.
extern "C" const char *__asan_default_options();  // NOLINT: its name
extern "C" const char *__asan_default_options() { // NOLINT
    return "detect_leaks=0";
}

int main(int argc, char **argv) {
    testing::InitGoogleTest(&argc, argv);
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
