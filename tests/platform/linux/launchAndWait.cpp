// The program that launches a command and stays, as the application would: FOLDER LOG COMMAND.

#include "platform/linux/ShellLauncher.h"

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char **argv) {
    const QCoreApplication application(argc, argv);
    constexpr int words = 4;
    if (argc != words)
        return 2;
    tarnvale::ShellLauncher launcher;
    const auto launched =
        launcher.launch({.command = argv[3], .folder = argv[1], .log = argv[2]}, [] { std::puts("failed"); });
    if (!launched) {
        std::puts(launched.error().c_str());
        return 1;
    }
    return QCoreApplication::exec();
}
