#pragma once

#include <QIcon>
#include <QRect>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace tarnvale {

/// A tray of the older kind, in which an X window docks (freedesktop.org, System Tray Protocol). Main thread.
class XembedTray {
public:
    /// A click, of any button.
    std::function<void()> onClick;

    XembedTray() = default;
    XembedTray(const XembedTray &) = delete;
    XembedTray &operator=(const XembedTray &) = delete;
    virtual ~XembedTray() = default;

    /// Such a tray is there now. Asks the X server.
    [[nodiscard]] virtual bool isAvailable() const = 0;

    virtual void show(const QIcon &icon, const QString &toolTip) = 0;
    virtual void hide() = 0;

    /// Where the icon is, in logical pixels; nothing while it isn't docked.
    [[nodiscard]] virtual std::optional<QRect> geometry() const = 0;
};

/// The tray of our own display. It is never available but on an X11 session. Touches nothing before the first
/// `show`: Qt decides once, at the first use, which kind of tray it talks to for the rest of the process's
/// life.
[[nodiscard]] std::unique_ptr<XembedTray> makeXembedTray();

} // namespace tarnvale
