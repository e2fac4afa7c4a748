#include "platform/linux/XWindow.h"

#include "support/TestProcess.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <xcb/xcb.h>

namespace tarnvale {

namespace {

xcb_atom_t atom(xcb_connection_t *connection, std::string_view name) {
    auto *reply = xcb_intern_atom_reply(
        connection, xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data()),
        nullptr);
    const xcb_atom_t value = reply != nullptr ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
    std::free(reply);
    return value;
}

xcb_screen_t *screenOf(xcb_connection_t *connection) {
    return xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
}

std::vector<std::uint32_t> rootNumbers(xcb_connection_t *connection, std::string_view name) {
    if (xcb_connection_has_error(connection) != 0)
        return {};
    auto *reply = xcb_get_property_reply(connection,
                                         xcb_get_property(connection, 0, screenOf(connection)->root,
                                                          atom(connection, name), XCB_ATOM_ANY, 0, 1000),
                                         nullptr);
    std::vector<std::uint32_t> numbers;
    if (reply != nullptr && reply->format == 32) {
        const auto *first = static_cast<const std::uint32_t *>(xcb_get_property_value(reply));
        numbers.assign(first, first + reply->value_len);
    }
    std::free(reply);
    return numbers;
}

std::vector<std::uint32_t> rootNumbers(const std::string &display, std::string_view name) {
    xcb_connection_t *connection = xcb_connect(display.c_str(), nullptr);
    const auto numbers = rootNumbers(connection, name);
    xcb_disconnect(connection);
    return numbers;
}

void setNumber(xcb_connection_t *connection, xcb_window_t window, std::string_view name, xcb_atom_t type,
               std::uint32_t value) {
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, atom(connection, name), type, 32, 1,
                        &value);
}

} // namespace

XWindow::XWindow(const std::string &display, Pid pid, std::string_view machine, std::string_view type)
    : m_connection(xcb_connect(display.c_str(), nullptr)), m_window(xcb_generate_id(m_connection)) {
    const xcb_screen_t *screen = screenOf(m_connection);
    xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, m_window, screen->root, 10, 10, 100, 100, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, 0, nullptr);
    setNumber(m_connection, m_window, "_NET_WM_PID", XCB_ATOM_CARDINAL, static_cast<std::uint32_t>(pid));
    if (!machine.empty())
        xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, m_window, XCB_ATOM_WM_CLIENT_MACHINE,
                            XCB_ATOM_STRING, 8, static_cast<std::uint32_t>(machine.size()), machine.data());
    if (!type.empty())
        setNumber(m_connection, m_window, "_NET_WM_WINDOW_TYPE", XCB_ATOM_ATOM, atom(m_connection, type));
    // Openbox doesn't list what it found while it was starting until something changes.
    for (int attempt = 0; attempt < 20; ++attempt) {
        xcb_unmap_window(m_connection, m_window);
        xcb_map_window(m_connection, m_window);
        xcb_flush(m_connection);
        if (eventually([this] { return isListed(); }, std::chrono::milliseconds(500)))
            break;
    }
}

bool XWindow::isListed() const {
    const auto listed = rootNumbers(m_connection, "_NET_CLIENT_LIST");
    return std::find(listed.begin(), listed.end(), m_window) != listed.end();
}

XWindow::~XWindow() {
    xcb_disconnect(m_connection);
}

std::optional<std::uint32_t> activeWindow(const std::string &display) {
    const auto numbers = rootNumbers(display, "_NET_ACTIVE_WINDOW");
    return numbers.empty() ? std::nullopt : std::optional(numbers.front());
}

bool hasWindowManager(const std::string &display) {
    return !rootNumbers(display, "_NET_NUMBER_OF_DESKTOPS").empty();
}

} // namespace tarnvale
