#include "platform/linux/VirtualDisplay.h"

#include "platform/linux/XWindow.h"

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <string_view>
#include <unistd.h>

namespace tarnvale {

VirtualDisplay::VirtualDisplay(const std::string &size) {
    if (!std::filesystem::exists("/usr/bin/Xvfb") || !std::filesystem::exists("/usr/bin/openbox"))
        return;
    const std::string number = m_folder.path("number");
    m_server = std::make_unique<TestProcess>(std::vector<std::string>{
        "/bin/sh", "-c", "exec Xvfb -displayfd 3 -screen 0 \"$1\"x24 -nolisten tcp -noreset 3>\"$0\"", number,
        size});
    const Pid display = awaitPid(number);
    if (display < 0)
        return;
    m_name = ":" + std::to_string(display);
    m_manager = std::make_unique<TestProcess>(std::vector<std::string>{"/usr/bin/openbox", "--sm-disable"},
                                              environmentWith({"DISPLAY=" + m_name}));
    // At its first start on a machine it waits for the cache of fonts.
    if (!eventually([this] { return hasWindowManager(m_name); }, std::chrono::seconds(30)))
        m_manager.reset();
}

VirtualDisplay::~VirtualDisplay() {
    m_manager.reset();
    if (m_server) {
        kill(m_server->pid(), SIGTERM); // so that it removes its socket
        m_server->waitForEnd();
    }
}

std::vector<std::string> environmentWith(const std::vector<std::string> &entries) {
    std::vector<std::string> environment = entries;
    for (char **entry = environ; *entry != nullptr; ++entry) {
        const std::string_view own = *entry;
        const std::string_view name = own.substr(0, own.find('=') + 1);
        if (std::none_of(entries.begin(), entries.end(),
                         [name](const std::string &other) { return other.starts_with(name); }))
            environment.emplace_back(own);
    }
    return environment;
}

} // namespace tarnvale
