#pragma once

#include <QDBusConnection>
#include <QDBusVirtualObject>
#include <QStringList>

namespace tarnvale {

/// The desktop's part of a tray: `org.kde.StatusNotifierWatcher`, which writes down what it is told. It is on
/// the bus until this object goes.
class FakeWatcher : public QDBusVirtualObject {
public:
    explicit FakeWatcher(const QDBusConnection &bus, bool hasHost = true);
    ~FakeWatcher() override;

    QStringList registered; ///< what items gave, in order
    bool refuses = false;   ///< the next items
    bool saysHosts = true;  ///< else it doesn't know the property

    /// A host comes or goes.
    void setHasHost(bool hasHost);

    [[nodiscard]] QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override;

private:
    QDBusConnection m_bus;
    bool m_hasHost;
};

} // namespace tarnvale
