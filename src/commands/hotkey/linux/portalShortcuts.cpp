#include "commands/hotkey/linux/portalShortcuts.h"

#include <QDBusMetaType>
#include <QDBusObjectPath>

#include <algorithm>

namespace tarnvale {

QDBusArgument &operator<<(QDBusArgument &argument, const PortalShortcut &shortcut) {
    argument.beginStructure();
    argument << shortcut.id << shortcut.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, PortalShortcut &shortcut) {
    argument.beginStructure();
    argument >> shortcut.id >> shortcut.properties;
    argument.endStructure();
    return argument;
}

void registerPortalShortcuts() {
    // Qt doesn't know its own type by name before it is used, and then connects no slot that takes one.
    qRegisterMetaType<QDBusObjectPath>();
    qDBusRegisterMetaType<PortalShortcut>();
    qDBusRegisterMetaType<QList<PortalShortcut>>();
}

std::optional<PortalShortcut> findShortcut(const QVariant &list, const QString &id) {
    if (list.metaType() != QMetaType::fromType<QDBusArgument>())
        return std::nullopt;
    const auto argument = list.value<QDBusArgument>();
    if (argument.currentSignature() != QLatin1String("a(sa{sv})"))
        return std::nullopt;
    const auto shortcuts = qdbus_cast<QList<PortalShortcut>>(argument);
    const auto found = std::find_if(shortcuts.begin(), shortcuts.end(),
                                    [&id](const PortalShortcut &shortcut) { return shortcut.id == id; });
    return found == shortcuts.end() ? std::nullopt : std::optional(*found);
}

} // namespace tarnvale
