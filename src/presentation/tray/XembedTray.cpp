#include "presentation/tray/XembedTray.h"

#include <QGuiApplication>
#include <QSystemTrayIcon>

#include <cstdlib>
#include <xcb/xcb.h>

namespace tarnvale {

namespace {

struct Freed {
    void operator()(void *reply) const { std::free(reply); }
};
template<typename Reply> using Owned = std::unique_ptr<Reply, Freed>;

/// Of the display that Qt works on: the `n` of ":0.n".
int screenNumber() {
    char *host = nullptr;
    int display = 0;
    int screen = 0;
    if (xcb_parse_display(nullptr, &host, &display, &screen) == 0)
        return 0;
    const Owned<char> freed(host);
    return screen;
}

bool hasSelectionOwner(xcb_connection_t *connection, const std::string &selection) {
    const auto atomAsked =
        xcb_intern_atom(connection, 1, static_cast<std::uint16_t>(selection.size()), selection.c_str());
    const Owned<xcb_intern_atom_reply_t> atom(xcb_intern_atom_reply(connection, atomAsked, nullptr));
    if (!atom || atom->atom == XCB_ATOM_NONE)
        return false;
    const auto ownerAsked = xcb_get_selection_owner(connection, atom->atom);
    const Owned<xcb_get_selection_owner_reply_t> owner(
        xcb_get_selection_owner_reply(connection, ownerAsked, nullptr));
    return owner && owner->owner != XCB_WINDOW_NONE;
}

class QtXembedTray : public XembedTray {
public:
    [[nodiscard]] bool isAvailable() const override {
        if (qGuiApp == nullptr)
            return false;
        const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
        return x11 != nullptr && x11->connection() != nullptr &&
               hasSelectionOwner(x11->connection(), "_NET_SYSTEM_TRAY_S" + std::to_string(screenNumber()));
    }

    void show(const QIcon &icon, const QString &toolTip) override {
        if (!m_icon)
            create();
        m_icon->setIcon(icon);
        m_icon->setToolTip(toolTip);
        m_icon->show();
    }

    void hide() override {
        if (m_icon)
            m_icon->hide();
    }

    [[nodiscard]] std::optional<QRect> geometry() const override {
        const QRect rect = m_icon && m_icon->isVisible() ? m_icon->geometry() : QRect();
        return rect.isEmpty() ? std::nullopt : std::optional(rect);
    }

private:
    /// The second press of a double click is none of its own: the first has done what a click does.
    void create() {
        m_icon = std::make_unique<QSystemTrayIcon>();
        QObject::connect(m_icon.get(), &QSystemTrayIcon::activated, m_icon.get(),
                         [this](QSystemTrayIcon::ActivationReason reason) {
                             if (reason != QSystemTrayIcon::DoubleClick && onClick)
                                 onClick();
                         });
    }

    std::unique_ptr<QSystemTrayIcon> m_icon;
};

} // namespace

std::unique_ptr<XembedTray> makeXembedTray() {
    return std::make_unique<QtXembedTray>();
}

} // namespace tarnvale
