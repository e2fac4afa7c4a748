#include "preview-renderer/boundProcess.h"

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <string_view>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>
#include <vector>

namespace tarnvale {

namespace {

constexpr int lowPriority = 10;
constexpr rlim_t mostMemory = rlim_t{1} << 30; ///< of one process, in bytes

void limit(decltype(RLIMIT_DATA) resource, rlim_t value) {
    const rlimit both{value, value};
    setrlimit(resource, &both);
}

void yieldMemoryFirst() {
    const int file = open("/proc/self/oom_score_adj", O_WRONLY | O_CLOEXEC);
    if (file < 0)
        return;
    constexpr std::string_view first = "1000"; // proc(5)
    [[maybe_unused]] const ssize_t written = write(file, first.data(), first.size());
    close(file);
}

/// The names of the variables that begin so.
std::vector<std::string> variables(std::string_view begin) {
    std::vector<std::string> names;
    for (char **entry = environ; *entry != nullptr; ++entry)
        if (const std::string_view text(*entry); text.starts_with(begin))
            names.emplace_back(text.substr(0, text.find('=')));
    return names;
}

} // namespace

void boundProcess() {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    setpriority(PRIO_PROCESS, 0, lowPriority);
    limit(RLIMIT_CORE, 0);
    limit(RLIMIT_DATA, mostMemory);
    yieldMemoryFirst();
}

void prepareEnvironment(bool isSandboxed) {
    for (const std::string &name : variables("QT"))
        unsetenv(name.c_str());
    for (const char *name : {"DISPLAY", "WAYLAND_DISPLAY", "XAUTHORITY"})
        unsetenv(name);
    // A page that plays a film would keep the screen from being locked.
    setenv("DBUS_SESSION_BUS_ADDRESS", "disabled:", 1);
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    setenv("QT_QUICK_BACKEND", "software", 1);
    std::string flags = "--disable-gpu --renderer-process-limit=2 --js-flags=--max-old-space-size=256"
                        " --force-color-profile=srgb --hide-scrollbars --mute-audio";
    if (!isSandboxed)
        flags += " --no-sandbox";
    setenv("QTWEBENGINE_CHROMIUM_FLAGS", flags.c_str(), 1);
}

} // namespace tarnvale
