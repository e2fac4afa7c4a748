#include "app/loadApplication.h"
#include "commands/runCommandLine.h"

int main(int argc, char **argv) {
    const std::vector<std::string> arguments(argv, argv + argc);
    if (const auto status = tarnvale::runCommandLine(arguments))
        return *status;
    return tarnvale::loadApplication(argc, argv);
}
