#pragma once

#include "presentation/tray/busTypes.h"

#include <QDBusConnection>
#include <QObject>
#include <QPoint>

#include <optional>

namespace tarnvale {

/// How the item looks and what it says.
struct TrayLook {
    QString iconName; ///< in the desktop's icon theme; empty: hosts take a pixmap
    QList<TrayPixmap> pixmaps;
    QString toolTip;
    QString accessibleText;
    bool operator==(const TrayLook &) const = default;
};

/// The item that the desktop's tray shows: `org.kde.StatusNotifierItem` at /StatusNotifierItem. Being known
/// to the tray is `TrayHosts`' work, the menu `DBusMenu`'s. Main thread.
class StatusNotifierItem : public QObject {
    Q_OBJECT
public:
    static constexpr const char *path = "/StatusNotifierItem";

    /// Exports itself; `bus` keeps nothing of it once this object is gone.
    explicit StatusNotifierItem(const QDBusConnection &bus, QObject *parent = nullptr);
    StatusNotifierItem(const StatusNotifierItem &) = delete;
    StatusNotifierItem &operator=(const StatusNotifierItem &) = delete;
    ~StatusNotifierItem() override;

    [[nodiscard]] const TrayLook &look() const { return m_look; }

    /// Hosts hear only of what is different.
    void setLook(const TrayLook &look);

    /// What the last click allows a window to do, once: to come to the front (`XDG_ACTIVATION_TOKEN`). Empty
    /// when the host gave none.
    [[nodiscard]] QString takeActivationToken() { return std::exchange(m_token, {}); }

    /// For the bus: a host's hint at where it was clicked. (0, 0) is what hosts say that know no place.
    [[nodiscard]] static std::optional<QPoint> placeOf(int x, int y);
    void setActivationToken(const QString &token);

Q_SIGNALS:
    /// The place is in device or in logical pixels, as the host has it.
    void activated(std::optional<QPoint> place);
    void secondaryActivated(std::optional<QPoint> place);
    void menuRequested(std::optional<QPoint> place);

    void iconChanged();
    void toolTipChanged();

private:
    QDBusConnection m_bus;
    TrayLook m_look;
    QString m_token;
};

} // namespace tarnvale
