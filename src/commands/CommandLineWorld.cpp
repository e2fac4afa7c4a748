#include "commands/CommandLineWorld.h"

#include "commands/desktopOpener.h"
#include "discovery/Machine.h"
#include "discovery/runTool.h"

#include <cerrno>
#include <memory>
#include <thread>
#include <unistd.h>

namespace tarnvale {

namespace {

bool writeAll(int fd, std::string_view text) {
    while (!text.empty()) {
        const ssize_t count = write(fd, text.data(), text.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        text.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

} // namespace

CommandLineWorld CommandLineWorld::real() {
    using namespace std::chrono_literals;
    const auto machine = std::make_shared<std::unique_ptr<Machine>>();
    return {.writeOutput = [](std::string_view text) { return writeAll(STDOUT_FILENO, text); },
            .writeError = [](std::string_view text) { writeAll(STDERR_FILENO, text); },
            .machine = [machine]() -> Machine & {
                if (*machine == nullptr)
                    *machine = makeDefaultMachine();
                return **machine;
            },
            .sleep = [](std::chrono::milliseconds time) { std::this_thread::sleep_for(time); },
            .openURL =
                [](const std::string &url) {
                    if (const auto opener = desktopOpener())
                        runOpener(*opener, {url}, 5s);
                },
            .uid = getuid()};
}

} // namespace tarnvale
