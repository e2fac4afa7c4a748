#pragma once

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QStringList>

namespace tarnvale {

class ShortcutQueue;

/// The shortcuts on the bus. Each call is answered when its work is done; the main thread waits for none.
/// `InvalidArgs` for a port outside 1 to 65535, `LimitsExceeded` when too many calls wait.
class ShortcutsService : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "dev.tarnvale.Shortcuts")
    // The same as packaging/dev.tarnvale.Shortcuts.xml.
    Q_CLASSINFO("D-Bus Introspection", "  <interface name=\"dev.tarnvale.Shortcuts\">\n"
                                       "    <method name=\"ListDevPorts\">\n"
                                       "      <arg name=\"lines\" type=\"as\" direction=\"out\"/>\n"
                                       "      <arg name=\"dialog\" type=\"s\" direction=\"out\"/>\n"
                                       "    </method>\n"
                                       "    <method name=\"FreePort\">\n"
                                       "      <arg name=\"port\" type=\"i\" direction=\"in\"/>\n"
                                       "      <arg name=\"dialog\" type=\"s\" direction=\"out\"/>\n"
                                       "    </method>\n"
                                       "    <method name=\"OpenPort\">\n"
                                       "      <arg name=\"port\" type=\"i\" direction=\"in\"/>\n"
                                       "    </method>\n"
                                       "  </interface>\n")
public:
    /// Adds the interface to `object`; `queue` outlives it.
    ShortcutsService(QObject *object, const QDBusConnection &bus, ShortcutQueue &queue);

public Q_SLOTS:
    QStringList ListDevPorts(const QDBusMessage &call, QString &dialog);
    QString FreePort(int port, const QDBusMessage &call);
    void OpenPort(int port, const QDBusMessage &call);

private:
    [[nodiscard]] bool isPort(const QDBusMessage &call, int port) const;
    void refuseFlood(const QDBusMessage &call) const;

    QDBusConnection m_bus;
    ShortcutQueue &m_queue;
};

} // namespace tarnvale
