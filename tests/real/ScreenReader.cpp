#include "real/ScreenReader.h"

#include "support/ManualClock.h"

#include <chrono>

namespace tarnvale {

ScreenReader::ScreenReader(const RealDesktop &desktop)
    : m_desktop(desktop),
      m_listener({"/usr/bin/python3", TARNVALE_TESTS_FOLDER "/real/heardFocus.py"},
                 {.environment = desktop.environment()}) {
    static_cast<void>(waitFor([this] { return heard().starts_with("ready\n"); }));
}

bool ScreenReader::goTo(const std::string &name, const std::string &key) {
    constexpr int mostSteps = 40;
    for (int step = 0; step < mostSteps; ++step) {
        const std::string before = heard();
        m_desktop.press({key});
        if (hears(name, before))
            return true;
    }
    return false;
}

/// The application may not know yet that somebody listens: then a step is heard by nobody.
bool ScreenReader::hears(const std::string &name, const std::string &before) const {
    constexpr std::chrono::milliseconds longestWait(500);
    static_cast<void>(
        waitFor([&] { return heard().size() > before.size() && heard().ends_with('\n'); }, longestWait));
    return heard().substr(before.size()).ends_with(name + "\n");
}

} // namespace tarnvale
