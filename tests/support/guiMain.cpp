// The main program of tests that show something. Without a display of the test's own they draw into memory.

#include <QApplication>
#include <QQuickWindow>

#include <gtest/gtest.h>

// What the address sanitizer asks for at its start (sanitizer/lsan_interface.h). Qt keeps the pictures of its
// Image items in a cache of its own, which it doesn't empty at the end of a program that has seen a click; to
// know them, whole stacks are needed.
extern "C" const char *__lsan_default_suppressions();  // NOLINT: its name
extern "C" const char *__lsan_default_suppressions() { // NOLINT
    return "leak:QQuickPixmap::load\nleak:QQuickImage::updatePaintNode";
}
extern "C" const char *__lsan_default_options();  // NOLINT
extern "C" const char *__lsan_default_options() { // NOLINT
    return "print_suppressions=0";
}
extern "C" const char *__asan_default_options();  // NOLINT
extern "C" const char *__asan_default_options() { // NOLINT
    return "fast_unwind_on_malloc=0";
}

int main(int argc, char **argv) {
    testing::InitGoogleTest(&argc, argv);
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
