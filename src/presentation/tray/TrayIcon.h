#pragma once

#include "platform/Clock.h"
#include "presentation/MenuEntry.h"
#include "presentation/tray/DBusMenu.h"
#include "presentation/tray/StatusNotifierItem.h"
#include "presentation/tray/TrayHosts.h"
#include "presentation/tray/XembedTray.h"

#include <QColor>
#include <QFutureWatcher>
#include <QObject>
#include <QRect>

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <set>

namespace tarnvale {

/// Which tray shows our icon.
enum class TrayKind { none, statusNotifier, xembed };

/// The program's icon in the tray, whichever kind of tray the desktop has, and whenever it comes or goes. An
/// X11 desktop that shows no status items gets, after a while, an icon of the older kind. Main thread.
class TrayIcon : public QObject {
    Q_OBJECT
public:
    /// How long a desktop may take to show status items, and how often it is looked for another tray then.
    static constexpr std::chrono::seconds patience{12};

    /// `clock` outlives this object.
    TrayIcon(const QDBusConnection &bus, Clock &clock, std::unique_ptr<XembedTray> xembed = makeXembedTray(),
             QObject *parent = nullptr);
    TrayIcon(const TrayIcon &) = delete;
    TrayIcon &operator=(const TrayIcon &) = delete;
    ~TrayIcon() override;

    [[nodiscard]] TrayKind kind() const { return m_kind; }

    /// The watched ports that have stopped: while there are any, the icon has a red dot and names them.
    void setAlarm(const std::set<std::int64_t> &stoppedPorts);

    /// The menu that a host may show instead of telling us of a click. An XEmbed icon has none.
    void setMenu(const std::vector<MenuEntry> &entries) { m_menu.setMenu(entries); }

    /// The colour of the glyph where the host doesn't give it its own; light for dark trays at first.
    void setInk(const QColor &ink);

    /// The icon belongs to an open panel. Neither kind of tray has a way to show that, so this does nothing.
    void setHighlighted(bool isHighlighted);

    /// Where the icon is, in logical pixels. Only an XEmbed tray lets us know.
    [[nodiscard]] std::optional<QRect> geometry() const;

    /// What the last click allows a window to do, once; empty when the host gave nothing.
    [[nodiscard]] QString takeActivationToken() { return m_item.takeActivationToken(); }

Q_SIGNALS:
    /// A click. `place` is in device or logical pixels, as the host sent it (see `resolveActivation`);
    /// nothing when it knows no place, or when `geometry` does.
    void activated(std::optional<QPoint> place);

    /// The host wants a menu shown and can't do so itself.
    void menuRequested(std::optional<QPoint> place);

    void kindChanged();

private:
    void onHostChanged();
    void waitForHost();
    void onWaitEnded();
    void lookForXembed();
    void refresh();
    void setKind(TrayKind kind);

    Clock &m_clock;
    DBusMenu m_menu;
    StatusNotifierItem m_item;
    TrayHosts m_hosts; ///< after the item, which is asked for as soon as it is registered
    std::unique_ptr<XembedTray> m_xembed;
    std::set<std::int64_t> m_stopped;
    QColor m_ink{0xf4, 0xf4, 0xf5};
    TrayKind m_kind = TrayKind::none;
    QFutureWatcher<void> m_wait; ///< for a host; what was waited for before is forgotten
};

} // namespace tarnvale
