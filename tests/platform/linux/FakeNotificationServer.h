#pragma once

#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QList>

namespace tarnvale {

/// A server of desktop notifications that shows nothing and writes down what it was asked for. It has the
/// service's name as long as it lives.
class FakeNotificationServer : public QDBusVirtualObject {
public:
    explicit FakeNotificationServer(const QDBusConnection &bus);
    ~FakeNotificationServer() override;

    QStringList capabilities{QStringLiteral("actions"), QStringLiteral("body")};
    bool isSilent = false;  ///< leaves every call unanswered
    bool refuses = false;   ///< answers `Notify` with an error
    bool speaksOdd = false; ///< answers with values of other kinds
    uint nextId = 1;
    int capabilityCalls = 0;
    QList<QVariantList> notified; ///< the arguments of each `Notify`

    void invoke(uint id, const QString &action) { emitSignal("ActionInvoked", {id, action}); }
    void close(uint id, uint reason) { emitSignal("NotificationClosed", {id, reason}); }
    void giveToken(uint id, const QString &token) { emitSignal("ActivationToken", {id, token}); }

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override;
    [[nodiscard]] QString introspect(const QString &) const override { return {}; }

private:
    void emitSignal(const char *name, const QVariantList &arguments);

    QDBusConnection m_bus;
};

} // namespace tarnvale
