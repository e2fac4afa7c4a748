#pragma once

#include "discovery/ListeningPort.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

struct xcb_connection_t;

namespace tarnvale {

/// A small window of a made-up process, shown until this object goes.
class XWindow {
public:
    /// `machine` is the host that the window says it comes from, `type` one of the types of EWMH, as in
    /// "_NET_WM_WINDOW_TYPE_DOCK". Returns once the window manager lists the window.
    XWindow(const std::string &display, Pid pid, std::string_view machine = {}, std::string_view type = {});
    XWindow(const XWindow &) = delete;
    XWindow &operator=(const XWindow &) = delete;
    ~XWindow();

    [[nodiscard]] std::uint32_t id() const { return m_window; }

private:
    [[nodiscard]] bool isListed() const;

    xcb_connection_t *m_connection;
    std::uint32_t m_window;
};

/// The window that is in front, by what the window manager says.
[[nodiscard]] std::optional<std::uint32_t> activeWindow(const std::string &display);

/// A window manager is ready to manage windows.
[[nodiscard]] bool hasWindowManager(const std::string &display);

} // namespace tarnvale
