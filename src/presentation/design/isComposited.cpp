#include "presentation/design/isComposited.h"

#include <QGuiApplication>

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>
#include <string_view>

namespace tarnvale {

namespace {

struct Free {
    void operator()(void *reply) const { std::free(reply); } // NOLINT: xcb allocates so
};
template<typename Reply> using Owned = std::unique_ptr<Reply, Free>;

bool hasSelectionOwner(xcb_connection_t *connection, std::string_view selection) {
    const auto asked =
        xcb_intern_atom(connection, 1, static_cast<std::uint16_t>(selection.size()), selection.data());
    const Owned<xcb_intern_atom_reply_t> atom(xcb_intern_atom_reply(connection, asked, nullptr));
    if (!atom || atom->atom == XCB_ATOM_NONE)
        return false;
    const Owned<xcb_get_selection_owner_reply_t> owner(
        xcb_get_selection_owner_reply(connection, xcb_get_selection_owner(connection, atom->atom), nullptr));
    return owner && owner->owner != XCB_WINDOW_NONE;
}

} // namespace

bool isComposited() {
    const QString platform = QGuiApplication::platformName();
    // Other platforms may claim an X11 interface too, without a connection.
    const auto *x11 = platform == QLatin1String("xcb")
                          ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>()
                          : nullptr;
    if (x11 != nullptr && x11->connection() != nullptr)
        return hasSelectionOwner(x11->connection(), "_NET_WM_CM_S0");
    return platform.startsWith(QLatin1String("wayland")) || platform == QLatin1String("offscreen");
}

} // namespace tarnvale
