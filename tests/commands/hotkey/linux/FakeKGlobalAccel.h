#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QList>
#include <QStringList>

namespace tarnvale {

/// KDE's daemon of global shortcuts, with what others hold decided by a test. It has the service's name as
/// long as it lives.
class FakeKGlobalAccel : public QDBusVirtualObject {
public:
    explicit FakeKGlobalAccel(const QDBusConnection &bus);
    ~FakeKGlobalAccel() override;

    QList<int> others; ///< keys that aren't free
    bool isForbidden = false;
    bool speaksOdd = false; ///< answers with values of other kinds

    QStringList calls; ///< the methods that were called, in order
    QStringList actionId;
    QList<int> keys; ///< ours
    uint flags = 0;
    bool isActive = false;

    /// The two ways in which a press is told.
    void pressOld(const QString &action = QStringLiteral("toggle-panel"));
    void pressNew(const QString &action = QStringLiteral("toggle-panel"));

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override;
    [[nodiscard]] QString introspect(const QString &) const override { return {}; }

private:
    [[nodiscard]] QDBusMessage replyTo(const QDBusMessage &message);
    void send(const QString &name, const QVariantList &arguments);

    QDBusConnection m_bus;
};

} // namespace tarnvale
