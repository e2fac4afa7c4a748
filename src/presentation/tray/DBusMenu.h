#pragma once

#include "presentation/MenuEntry.h"
#include "presentation/tray/MenuTree.h"
#include "presentation/tray/busTypes.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusVariant>
#include <QObject>
#include <QStringList>

#include <map>

namespace tarnvale {

/// A menu that the host of the tray shows: `com.canonical.dbusmenu`, version 3, at /MenuBar. The names of the
/// slots, signals and properties are the protocol's. A call about an item that isn't there is answered with
/// an error. Main thread.
class DBusMenu : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.canonical.dbusmenu")
    Q_PROPERTY(uint Version READ version CONSTANT)
    Q_PROPERTY(QString Status READ status CONSTANT)
    Q_PROPERTY(QString TextDirection READ textDirection)
    Q_PROPERTY(QStringList IconThemePath READ iconThemePath CONSTANT)
public:
    static constexpr const char *path = "/MenuBar";
    /// Calls about more items at once are refused.
    static constexpr int mostInGroup = 1000;

    /// Exports itself; `bus` keeps nothing of it once this object is gone.
    explicit DBusMenu(const QDBusConnection &bus, QObject *parent = nullptr);
    DBusMenu(const DBusMenu &) = delete;
    DBusMenu &operator=(const DBusMenu &) = delete;
    ~DBusMenu() override;

    /// Replaces the menu. Hosts hear of it once the event loop runs, of several changes at once, and of an
    /// equal menu nothing; actions are always the latest.
    void setMenu(const std::vector<MenuEntry> &entries);

    [[nodiscard]] uint version() const { return 3; }
    [[nodiscard]] QString status() const { return QStringLiteral("normal"); }
    [[nodiscard]] QString textDirection() const;
    [[nodiscard]] QStringList iconThemePath() const { return {}; }

public Q_SLOTS:
    Q_SCRIPTABLE uint GetLayout(int parentId, int recursionDepth, const QStringList &propertyNames,
                                tarnvale::MenuLayout &layout);
    Q_SCRIPTABLE QList<tarnvale::MenuItemProperties> GetGroupProperties(const QList<int> &ids,
                                                                        const QStringList &propertyNames);
    Q_SCRIPTABLE QDBusVariant GetProperty(int id, const QString &name);
    Q_SCRIPTABLE void Event(int id, const QString &eventId, const QDBusVariant &data, uint timestamp);
    Q_SCRIPTABLE QList<int> EventGroup(const QList<tarnvale::MenuEvent> &events);
    Q_SCRIPTABLE bool AboutToShow(int id);
    Q_SCRIPTABLE QList<int> AboutToShowGroup(const QList<int> &ids, QList<int> &idErrors);

Q_SIGNALS:
    Q_SCRIPTABLE void LayoutUpdated(uint revision, int parent);
    Q_SCRIPTABLE void ItemsPropertiesUpdated(const QList<tarnvale::MenuItemProperties> &updatedProps,
                                             const QList<tarnvale::MenuItemNames> &removedProps);

private:
    [[nodiscard]] const MenuNode *require(int id);
    [[nodiscard]] bool allows(qsizetype count);
    [[nodiscard]] bool handle(int id, const QString &event);
    void announce();
    void announceProperties(const std::map<int, QVariantMap> &now);

    QDBusConnection m_bus;
    MenuTree m_tree;
    uint m_revision = 1;
    uint m_announcedRevision = 1;
    std::map<int, QVariantMap> m_announced; ///< properties by id, as hosts were told last
    bool m_isAnnouncing = false;            ///< due
};

} // namespace tarnvale
