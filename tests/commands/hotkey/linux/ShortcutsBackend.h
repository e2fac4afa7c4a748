#pragma once

#include "commands/hotkey/linux/portalShortcuts.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QStringList>

namespace tarnvale {

/// The desktop's part of the portal of global shortcuts (org.freedesktop.impl.portal.GlobalShortcuts), which
/// the real portal asks on behalf of programs; a test plays its user.
class ShortcutsBackend : public QDBusVirtualObject {
public:
    explicit ShortcutsBackend(const QDBusConnection &bus);
    ~ShortcutsBackend() override;

    static inline const QString service = QStringLiteral("org.freedesktop.impl.portal.desktop.test");

    uint code = 0;                 ///< the answer to a binding: 1 and 2 are refusals
    bool bindsWithSession = false; ///< as Plasma 5.27: a session takes shortcuts, a binding none
    QList<PortalShortcut> known;   ///< what is bound

    QStringList calls; ///< the methods that were called, in order
    QList<PortalShortcut> asked;
    QString session; ///< path of the one that is open; empty without one

    void activate(const QString &id);
    void change(const QString &id, const QString &trigger);
    void closeSession();

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override;
    [[nodiscard]] QString introspect(const QString &) const override { return {}; }

private:
    [[nodiscard]] QVariantList answerTo(const QDBusMessage &message);
    [[nodiscard]] QVariantList createSession(const QVariantList &arguments);
    [[nodiscard]] QVariantMap shortcuts() const;
    void bind(const QList<PortalShortcut> &shortcuts);
    void send(const QString &path, const QString &interface, const QString &name,
              const QVariantList &arguments);

    QDBusConnection m_bus;
};

} // namespace tarnvale
