#pragma once

#include <QDBusArgument>
#include <QList>
#include <QVariantMap>

#include <optional>
#include <string>

namespace tarnvale {

/// A shortcut in the form `(sa{sv})` of org.freedesktop.portal.GlobalShortcuts.
struct PortalShortcut {
    QString id;
    QVariantMap properties;
};

QDBusArgument &operator<<(QDBusArgument &argument, const PortalShortcut &shortcut);
const QDBusArgument &operator>>(const QDBusArgument &argument, PortalShortcut &shortcut);

/// Has to be called before shortcuts are sent, or slots connected to the portal's signals.
void registerPortalShortcuts();

/// The shortcut `id` of a list as the portal sends it; nothing when it isn't there, or `list` is none.
[[nodiscard]] std::optional<PortalShortcut> findShortcut(const QVariant &list, const QString &id);

} // namespace tarnvale

Q_DECLARE_METATYPE(tarnvale::PortalShortcut)
