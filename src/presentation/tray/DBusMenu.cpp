#include "presentation/tray/DBusMenu.h"

#include "presentation/tray/menuProperties.h"

#include <QDBusError>
#include <QLocale>
#include <QSet>

namespace tarnvale {

namespace {

/// Those of `names`; all when it is empty.
QVariantMap filtered(const QVariantMap &properties, const QStringList &names) {
    if (names.isEmpty())
        return properties;
    QVariantMap some;
    for (auto property = properties.begin(); property != properties.end(); ++property)
        if (names.contains(property.key()))
            some.insert(property.key(), property.value());
    return some;
}

/// `depth` levels below `node`; all when it is negative.
MenuLayout layoutOf(const MenuNode &node, int depth, const QStringList &names) {
    MenuLayout layout{node.id, filtered(node.properties, names), {}};
    if (depth != 0)
        for (const MenuNode &child : node.children)
            layout.children.append(layoutOf(child, depth < 0 ? depth : depth - 1, names));
    return layout;
}

std::map<int, QVariantMap> propertiesById(const MenuTree &tree) {
    std::map<int, QVariantMap> properties;
    forEachNode(tree.root(), [&](const MenuNode &node) { properties[node.id] = node.properties; });
    return properties;
}

} // namespace

DBusMenu::DBusMenu(const QDBusConnection &bus, QObject *parent)
    : QObject(parent), m_bus(bus), m_announced(propertiesById(m_tree)) {
    registerBusTypes();
    m_bus.registerObject(QString::fromLatin1(path), this,
                         QDBusConnection::ExportScriptableContents | QDBusConnection::ExportAllProperties);
}

DBusMenu::~DBusMenu() {
    m_bus.unregisterObject(QString::fromLatin1(path));
}

void DBusMenu::setMenu(const std::vector<MenuEntry> &entries) {
    if (m_tree.set(entries))
        ++m_revision;
    if (!std::exchange(m_isAnnouncing, true))
        QMetaObject::invokeMethod(this, &DBusMenu::announce, Qt::QueuedConnection);
}

QString DBusMenu::textDirection() const {
    return QLocale().textDirection() == Qt::RightToLeft ? QStringLiteral("rtl") : QStringLiteral("ltr");
}

uint DBusMenu::GetLayout(int parentId, int recursionDepth, const QStringList &propertyNames,
                         MenuLayout &layout) {
    if (const MenuNode *node = require(parentId))
        layout = layoutOf(*node, recursionDepth, propertyNames);
    return m_revision;
}

/// All items when no ids are given. Unknown ones among known ones are left out: the menu may have changed
/// since the host looked.
QList<MenuItemProperties> DBusMenu::GetGroupProperties(const QList<int> &ids,
                                                       const QStringList &propertyNames) {
    QList<MenuItemProperties> found;
    if (!allows(ids.size()))
        return found;
    const QSet<int> wanted(ids.begin(), ids.end());
    forEachNode(m_tree.root(), [&](const MenuNode &node) {
        if (wanted.isEmpty() || wanted.contains(node.id))
            found.append({node.id, filtered(node.properties, propertyNames)});
    });
    if (found.isEmpty())
        static_cast<void>(require(ids.first()));
    return found;
}

QDBusVariant DBusMenu::GetProperty(int id, const QString &name) {
    QDBusVariant nothing(QString{});
    const MenuNode *node = require(id);
    if (node == nullptr)
        return nothing;
    if (node->properties.contains(name))
        return QDBusVariant(node->properties.value(name));
    if (menuPropertyDefaults().contains(name))
        return QDBusVariant(menuPropertyDefaults().value(name));
    sendErrorReply(QDBusError::InvalidArgs, QStringLiteral("no such property of a menu item"));
    return nothing;
}

void DBusMenu::Event(int id, const QString &eventId, const QDBusVariant &, uint) {
    if (!handle(id, eventId))
        static_cast<void>(require(id));
}

/// The ids that aren't in the menu; an error when none of them is.
QList<int> DBusMenu::EventGroup(const QList<MenuEvent> &events) {
    QList<int> unknown;
    if (!allows(events.size()))
        return unknown;
    for (const MenuEvent &event : events)
        if (!handle(event.id, event.name))
            unknown.append(event.id);
    if (!unknown.isEmpty() && unknown.size() == events.size())
        static_cast<void>(require(unknown.first()));
    return unknown;
}

/// The menu is always up to date, so no host needs to ask anew.
bool DBusMenu::AboutToShow(int id) {
    static_cast<void>(require(id));
    return false;
}

QList<int> DBusMenu::AboutToShowGroup(const QList<int> &ids, QList<int> &idErrors) {
    if (!allows(ids.size()))
        return {};
    for (const int id : ids)
        if (m_tree.find(id) == nullptr)
            idErrors.append(id);
    if (!idErrors.isEmpty() && idErrors.size() == ids.size())
        static_cast<void>(require(idErrors.first()));
    return {};
}

/// Null, and the call is answered with an error, when there is no such item.
const MenuNode *DBusMenu::require(int id) {
    const MenuNode *node = m_tree.find(id);
    if (node == nullptr)
        sendErrorReply(QDBusError::InvalidArgs, QStringLiteral("no menu item %1").arg(id));
    return node;
}

bool DBusMenu::allows(qsizetype count) {
    if (count > mostInGroup)
        sendErrorReply(QDBusError::LimitsExceeded, QStringLiteral("too many menu items in one call"));
    return count <= mostInGroup;
}

/// Whether there is such an item. What a click does comes after the answer to the host, since it may take
/// long or replace the menu.
bool DBusMenu::handle(int id, const QString &event) {
    const MenuNode *node = m_tree.find(id);
    if (node != nullptr && event == QStringLiteral("clicked") && node->isEnabled && node->act)
        QMetaObject::invokeMethod(this, node->act, Qt::QueuedConnection);
    return node != nullptr;
}

void DBusMenu::announce() {
    m_isAnnouncing = false;
    announceProperties(propertiesById(m_tree));
    if (std::exchange(m_announcedRevision, m_revision) != m_revision)
        Q_EMIT LayoutUpdated(m_revision, m_tree.root().id);
}

/// Of items that came or went the layout tells.
void DBusMenu::announceProperties(const std::map<int, QVariantMap> &now) {
    QList<MenuItemProperties> updated;
    QList<MenuItemNames> removed;
    for (const auto &[id, properties] : now) {
        const auto before = m_announced.find(id);
        if (before == m_announced.end() || before->second == properties)
            continue;
        QVariantMap changed;
        QStringList gone;
        for (auto property = properties.begin(); property != properties.end(); ++property)
            if (before->second.value(property.key()) != property.value())
                changed.insert(property.key(), property.value());
        for (const QString &name : before->second.keys())
            if (!properties.contains(name))
                gone.append(name);
        if (!changed.isEmpty())
            updated.append({id, changed});
        if (!gone.isEmpty())
            removed.append({id, gone});
    }
    m_announced = now;
    if (!updated.isEmpty() || !removed.isEmpty())
        Q_EMIT ItemsPropertiesUpdated(updated, removed);
}

} // namespace tarnvale
