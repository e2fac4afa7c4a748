#pragma once

#include "commands/hotkey/HotKeyRegistrar.h"
#include "commands/hotkey/PendingAnswer.h"
#include "commands/hotkey/linux/PortalRequests.h"
#include "commands/hotkey/linux/portalShortcuts.h"

#include <QCoroTask>
#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QObject>
#include <QPointer>

namespace tarnvale {

/// A combination bound by the desktop on our behalf (org.freedesktop.portal.GlobalShortcuts, version 1). The
/// desktop may ask the user, has the last word about the keys, and remembers them for us, so a combination
/// that it already knows isn't asked for again at `start`.
///
/// Plasma 5.27 (seen with 5.27.5 behind version 1.16 of the portal) takes shortcuts only together with the
/// session, as an option "shortcuts" that nobody else knows and whose answer lists them; asked to bind, it
/// opens its settings and answers with what it has. So they are handed over both ways.
///
/// When the portal restarts, what was bound is bound again. When the desktop closes the session it stays so
/// until the next order.
class PortalHotKeyRegistrar : public QObject, public HotKeyRegistrar {
    Q_OBJECT
public:
    explicit PortalHotKeyRegistrar(const QDBusConnection &bus = QDBusConnection::sessionBus());
    PortalHotKeyRegistrar(const PortalHotKeyRegistrar &) = delete;
    PortalHotKeyRegistrar &operator=(const PortalHotKeyRegistrar &) = delete;
    ~PortalHotKeyRegistrar() override;

    /// `unavailable` when there is no portal, or one without this interface.
    [[nodiscard]] QFuture<HotKeyOutcome> grab(const Shortcut &shortcut, HotKeyOccasion occasion) override;
    void release() override;
    [[nodiscard]] HotKeyAvailability availability() const override;

    /// How the desktop knows our one shortcut.
    static inline const QString shortcutId = QStringLiteral("toggle-panel");

private Q_SLOTS:
    void onActivated(const QDBusObjectPath &session, const QString &id, qulonglong time,
                     const QVariantMap &options, const QDBusMessage &message);
    void onChanged(const QDBusObjectPath &session, const QDBusMessage &message);
    void onClosed(const QDBusMessage &message);
    void onOwnerChanged(const QString &service, const QString &before, const QString &after);

private:
    using Self = QPointer<PortalHotKeyRegistrar>;

    static QCoro::Task<> order(Self self, Shortcut shortcut, HotKeyOccasion occasion);
    static QCoro::Task<HotKeyOutcome> bind(Self self, Shortcut shortcut, HotKeyOccasion occasion);

    [[nodiscard]] QFuture<QDBusMessage> introduceOurselves();
    [[nodiscard]] QFuture<PortalAnswer> createSession(const Shortcut &shortcut);
    [[nodiscard]] QFuture<PortalAnswer> listShortcuts();
    [[nodiscard]] QFuture<PortalAnswer> bindShortcut(const Shortcut &shortcut);
    [[nodiscard]] bool openSession(const PortalAnswer &answer);
    void forgetSession();
    [[nodiscard]] bool takeBinding(const PortalAnswer &answer);
    [[nodiscard]] bool isFromSession(const QString &session, const QDBusMessage &message) const;
    void setTrigger(const PortalShortcut &shortcut);

    QDBusConnection m_bus;
    PortalRequests m_requests;
    QString m_session; ///< object path; empty without one
    std::optional<Shortcut> m_bound;
    std::string m_trigger;
    std::uint64_t m_round = 0; ///< of orders
    PendingOutcome m_pending;
};

} // namespace tarnvale
