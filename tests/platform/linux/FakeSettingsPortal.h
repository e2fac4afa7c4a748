#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QMap>
#include <QVariantMap>

namespace tarnvale {

/// A settings portal that says what it is told to. It has the service's name as long as it lives.
class FakeSettingsPortal : public QDBusVirtualObject {
public:
    explicit FakeSettingsPortal(const QDBusConnection &bus);
    ~FakeSettingsPortal() override;

    QMap<QString, QVariantMap> settings; ///< by namespace and key
    bool speaksOdd = false;              ///< answers with a value of another kind
    int calls = 0;

    /// Tells everybody of a change.
    void change(const QString &space, const QString &key, const QVariant &value);

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override;
    [[nodiscard]] QString introspect(const QString &) const override { return {}; }

private:
    QDBusConnection m_bus;
};

} // namespace tarnvale
