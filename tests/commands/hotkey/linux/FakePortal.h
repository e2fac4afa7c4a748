#pragma once

#include "commands/hotkey/linux/portalShortcuts.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QStringList>

#include <deque>
#include <optional>

namespace tarnvale {

/// A desktop portal with global shortcuts, whose user a test plays. It has the service's name as long as it
/// lives.
class FakePortal : public QDBusVirtualObject {
public:
    explicit FakePortal(const QDBusConnection &bus);
    ~FakePortal() override;

    bool hasShortcuts = true;      ///< the interface is there
    bool isForbidden = false;      ///< answers each call with an error
    bool isHasty = false;          ///< the response comes before the answer to the call
    bool speaksOdd = false;        ///< responds with values of other kinds
    bool isAsking = false;         ///< a binding waits for `decide`
    uint code = 0;                 ///< the response to a binding: 1 and 2 are refusals
    bool leavesOut = false;        ///< a binding is granted without our shortcut
    int refusedSessions = 0;       ///< so many of the next sessions aren't made
    bool bindsWithSession = false; ///< as Plasma 5.27: a session takes shortcuts, a binding none
    QList<PortalShortcut> known;   ///< what a new session lists

    QStringList calls; ///< the methods that were called, in order
    QList<PortalShortcut> asked;
    QString session; ///< path of the last one; empty when it was closed

    /// Responds to the binding that waits.
    void decide();
    void activate(const QString &id) { activate(session, id); }
    void activate(const QString &of, const QString &id);
    void change(const QList<PortalShortcut> &shortcuts);
    void closeSession();

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override;
    [[nodiscard]] QString introspect(const QString &) const override { return {}; }

    static PortalShortcut shortcut(const QString &id, const QString &trigger = {});

private:
    void handleRequest(const QDBusMessage &message);
    void grant();
    void respond(const QString &path, uint response, const QVariantMap &results);
    [[nodiscard]] QVariantMap resultsOf(const QDBusMessage &message);

    QDBusConnection m_bus;
    std::optional<QDBusMessage> m_waiting;
};

} // namespace tarnvale
