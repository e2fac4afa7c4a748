#pragma once

#include "platform/Appearance.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QMap>
#include <QObject>
#include <QVariantMap>

namespace tarnvale {

/// Follows the looks that the user prefers, by the settings portal of the session bus
/// (org.freedesktop.portal.Settings). Every call is asynchronous: until the portal has answered, and where
/// there is none, `appearance` says nothing. One that is replaced by another is asked anew; what the old one
/// said stays until then.
class AppearanceReader : public QObject {
    Q_OBJECT
public:
    explicit AppearanceReader(const QDBusConnection &bus = QDBusConnection::sessionBus());

    [[nodiscard]] const DesktopAppearance &appearance() const { return m_appearance; }

Q_SIGNALS:
    /// `appearance` says something else than before.
    void changed();

private Q_SLOTS:
    void onOwnerChanged(const QString &service, const QString &before, const QString &after);
    void onSettingChanged(const QString &space, const QString &key, const QDBusVariant &value,
                          const QDBusMessage &message);

private:
    void ask();
    void takeAll(const QDBusMessage &reply);
    void setValues(const AppearanceValues &values);

    QDBusConnection m_bus;
    QString m_portal;             ///< unique bus name of the one that answered
    std::uint64_t m_question = 0; ///< the last that was put; answers to others are late
    AppearanceValues m_values;
    DesktopAppearance m_appearance;
};

} // namespace tarnvale
