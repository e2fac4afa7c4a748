#include "platform/linux/activateWindow.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <unistd.h>
#include <xcb/xcb.h>

namespace tarnvale {

namespace {

struct Freed {
    void operator()(void *reply) const { std::free(reply); }
};
template<typename Reply> using Owned = std::unique_ptr<Reply, Freed>;
using Property = Owned<xcb_get_property_reply_t>;

struct Disconnected {
    void operator()(xcb_connection_t *connection) const { xcb_disconnect(connection); }
};
using Connection = std::unique_ptr<xcb_connection_t, Disconnected>;

/// An atom that nobody has made yet is `XCB_ATOM_NONE`: then no window can have such a property.
xcb_atom_t atom(xcb_connection_t *connection, std::string_view name) {
    const auto cookie = xcb_intern_atom(connection, 1, static_cast<std::uint16_t>(name.size()), name.data());
    const Owned<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection, cookie, nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

xcb_get_property_cookie_t ask(xcb_connection_t *connection, xcb_window_t window, xcb_atom_t name) {
    constexpr std::uint32_t mostWords = 1 << 16;
    return xcb_get_property(connection, 0, window, name, XCB_GET_PROPERTY_TYPE_ANY, 0, mostWords);
}

Property answer(xcb_connection_t *connection, xcb_get_property_cookie_t cookie) {
    return Property(xcb_get_property_reply(connection, cookie, nullptr));
}

/// The numbers of `property`, which lives on; none when it isn't made of such.
std::span<const std::uint32_t> numbersIn(const Property &property) {
    if (!property || property->format != 32)
        return {};
    const auto bytes = static_cast<std::size_t>(xcb_get_property_value_length(property.get()));
    return {static_cast<const std::uint32_t *>(xcb_get_property_value(property.get())),
            bytes / sizeof(std::uint32_t)};
}

std::string_view textIn(const Property &property) {
    if (!property || property->format != 8)
        return {};
    return {static_cast<const char *>(xcb_get_property_value(property.get())),
            static_cast<std::size_t>(xcb_get_property_value_length(property.get()))};
}

std::string ownMachine() {
    std::array<char, HOST_NAME_MAX + 1> name{};
    gethostname(name.data(), name.size() - 1);
    return name.data();
}

/// What is asked about one window.
struct WindowQuestions {
    xcb_window_t window = 0;
    xcb_get_property_cookie_t pid{};
    xcb_get_property_cookie_t machine{};
    xcb_get_property_cookie_t type{};
};

class WindowManager {
public:
    WindowManager(xcb_connection_t *connection, xcb_window_t root) : m_connection(connection), m_root(root) {}

    /// The process of each window, the lowest window first; 0 for those that don't count.
    [[nodiscard]] std::vector<std::pair<xcb_window_t, Pid>> windows() const {
        const xcb_atom_t pid = atom(m_connection, "_NET_WM_PID");
        const xcb_atom_t type = atom(m_connection, "_NET_WM_WINDOW_TYPE");
        std::vector<WindowQuestions> questions; // all asked before the first answer is waited for
        for (const xcb_window_t window : clients())
            questions.push_back({window, ask(m_connection, window, pid),
                                 ask(m_connection, window, XCB_ATOM_WM_CLIENT_MACHINE),
                                 ask(m_connection, window, type)});
        const std::array desktopTypes{atom(m_connection, "_NET_WM_WINDOW_TYPE_DESKTOP"),
                                      atom(m_connection, "_NET_WM_WINDOW_TYPE_DOCK")};
        std::vector<std::pair<xcb_window_t, Pid>> found;
        for (const WindowQuestions &asked : questions) {
            const Property pids = answer(m_connection, asked.pid);
            const Property machine = answer(m_connection, asked.machine);
            const Property types = answer(m_connection, asked.type);
            const bool isHere = textIn(machine).empty() || textIn(machine) == ownMachine();
            const auto kinds = numbersIn(types);
            const bool isDesktop = std::find_first_of(kinds.begin(), kinds.end(), desktopTypes.begin(),
                                                      desktopTypes.end()) != kinds.end();
            if (isHere && !isDesktop && !numbersIn(pids).empty())
                found.emplace_back(asked.window, static_cast<Pid>(numbersIn(pids).front()));
        }
        return found;
    }

    void activate(xcb_window_t window) const {
        constexpr std::uint32_t fromPager = 2; // a plain application's wish may be refused
        xcb_client_message_event_t message{};
        message.response_type = XCB_CLIENT_MESSAGE;
        message.format = 32;
        message.window = window;
        message.type = atom(m_connection, "_NET_ACTIVE_WINDOW");
        message.data.data32[0] = fromPager;
        message.data.data32[1] = XCB_CURRENT_TIME;
        xcb_send_event(m_connection, 0, m_root,
                       XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                       reinterpret_cast<const char *>(&message));
        // The answer to any question says that the message has been read.
        const Owned<xcb_get_input_focus_reply_t> done(
            xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
    }

private:
    [[nodiscard]] std::vector<xcb_window_t> clients() const {
        for (const char *name : {"_NET_CLIENT_LIST_STACKING", "_NET_CLIENT_LIST"}) {
            const Property list = answer(m_connection, ask(m_connection, m_root, atom(m_connection, name)));
            if (const auto windows = numbersIn(list); !windows.empty())
                return {windows.begin(), windows.end()};
        }
        return {};
    }

    xcb_connection_t *m_connection;
    xcb_window_t m_root;
};

std::optional<xcb_window_t> rootOf(xcb_connection_t *connection, int screen) {
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (; screens.rem > 0; xcb_screen_next(&screens))
        if (screen-- == 0)
            return screens.data->root;
    return std::nullopt;
}

} // namespace

bool activateWindowOf(const std::vector<Pid> &pids, const std::string &display) {
    int screen = 0;
    const Connection connection(xcb_connect(display.empty() ? nullptr : display.c_str(), &screen));
    if (xcb_connection_has_error(connection.get()) != 0)
        return false;
    const auto root = rootOf(connection.get(), screen);
    if (!root)
        return false;
    const WindowManager manager(connection.get(), *root);
    const auto windows = manager.windows();
    for (const Pid pid : pids) {
        const auto found = std::find_if(windows.rbegin(), windows.rend(),
                                        [pid](const auto &window) { return window.second == pid; });
        if (found == windows.rend())
            continue;
        manager.activate(found->first);
        return true;
    }
    return false;
}

} // namespace tarnvale
