#pragma once

#include "commands/hotkey/HotKeyRegistrar.h"
#include "commands/hotkey/PendingAnswer.h"

#include <QCoroTask>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QPointer>
#include <QVariantMap>

namespace tarnvale {

/// A combination taken from KDE's daemon of global shortcuts (org.kde.KGlobalAccel), where it is listed among
/// the shortcuts of applications. It is never taken from somebody else. When the daemon restarts, it is taken
/// again.
class KGlobalAccelRegistrar : public QObject, public HotKeyRegistrar {
    Q_OBJECT
public:
    explicit KGlobalAccelRegistrar(const QDBusConnection &bus = QDBusConnection::sessionBus());
    KGlobalAccelRegistrar(const KGlobalAccelRegistrar &) = delete;
    KGlobalAccelRegistrar &operator=(const KGlobalAccelRegistrar &) = delete;
    ~KGlobalAccelRegistrar() override;

    [[nodiscard]] QFuture<HotKeyOutcome> grab(const Shortcut &shortcut, HotKeyOccasion occasion) override;
    void release() override;
    [[nodiscard]] HotKeyAvailability availability() const override { return {}; }

private Q_SLOTS:
    void onGlobalShortcutPressed(const QString &component, const QString &action, qlonglong time,
                                 const QDBusMessage &message);
    void onPressed(const QString &action, const QVariantMap &details, const QDBusMessage &message);
    void onOwnerChanged(const QString &service, const QString &before, const QString &after);

private:
    using Self = QPointer<KGlobalAccelRegistrar>;

    static QCoro::Task<> order(Self self, Shortcut shortcut);
    static QCoro::Task<HotKeyOutcome> take(Self self, Shortcut shortcut);

    [[nodiscard]] QFuture<QDBusMessage> ask(const QString &method, const QVariantList &arguments) const;
    void listenTo(const QString &component);
    void stopListening();
    [[nodiscard]] bool isFromDaemon(const QDBusMessage &message) const;
    void count(std::uint64_t &presses);

    QDBusConnection m_bus;
    QString m_daemon;    ///< unique bus name
    QString m_component; ///< object path of ours; empty while none is listened to
    std::optional<Shortcut> m_taken;
    bool m_isRegistered = false; ///< the daemon may know our action
    std::uint64_t m_round = 0;   ///< of orders
    std::uint64_t m_toldAsNew = 0, m_toldAsOld = 0, m_presses = 0;
    PendingOutcome m_pending;
};

} // namespace tarnvale
