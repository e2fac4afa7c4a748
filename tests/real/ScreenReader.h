#pragma once

#include "real/RealDesktop.h"
#include "real/RealProcess.h"

#include <string>

namespace tarnvale {

/// Hears what a screen reader is told of the keyboard's way, in menus too, which stand in no tree.
class ScreenReader {
public:
    /// Returns once it listens.
    explicit ScreenReader(const RealDesktop &desktop);

    /// Presses `key` until the keyboard is at what has this name; whether it came there.
    [[nodiscard]] bool goTo(const std::string &name, const std::string &key);

    /// All that it heard.
    [[nodiscard]] std::string heard() const { return m_listener.output(); }

private:
    [[nodiscard]] bool hears(const std::string &name, const std::string &before) const;

    const RealDesktop &m_desktop;
    RealProcess m_listener;
};

} // namespace tarnvale
