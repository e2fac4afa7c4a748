#include "commands/hotkey/linux/KGlobalAccelRegistrar.h"

#include "commands/hotkey/linux/askBus.h"
#include "commands/hotkey/linux/desktopTriggers.h"

#include <QCoreApplication>
#include <QCoroFuture>
#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusServiceWatcher>

#include <algorithm>

namespace tarnvale {

namespace {

const QString service = QStringLiteral("org.kde.kglobalaccel");
const QString object = QStringLiteral("/kglobalaccel");
const QString daemonInterface = QStringLiteral("org.kde.KGlobalAccel");
const QString componentInterface = QStringLiteral("org.kde.kglobalaccel.Component");
const QString component = QStringLiteral("dev.tarnvale.Tarnvale");
const QString action = QStringLiteral("toggle-panel");

/// Our one action: the names of component and action, for the daemon and for the user.
QStringList actionId() {
    return {component, action, QStringLiteral("Tarnvale"),
            QCoreApplication::translate("GlobalHotKey", "Open the menu bar panel")};
}

QDBusMessage callOf(const QString &method, const QVariantList &arguments) {
    QDBusMessage call = QDBusMessage::createMethodCall(service, object, daemonInterface, method);
    call.setAutoStartService(false); // on another desktop the daemon may be installed, and is of no use
    call.setArguments(arguments);
    return call;
}

/// The keys that `reply` says are set; none when it is of another kind.
QList<int> keysIn(const QDBusMessage &reply) {
    const QVariant keys = reply.arguments().value(0);
    const bool isList = reply.signature() == QLatin1String("ai");
    return isList ? qdbus_cast<QList<int>>(keys) : QList<int>();
}

} // namespace

KGlobalAccelRegistrar::KGlobalAccelRegistrar(const QDBusConnection &bus) : m_bus(bus) {
    auto *watcher = new QDBusServiceWatcher(service, m_bus, QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(watcher, &QDBusServiceWatcher::serviceOwnerChanged, this, &KGlobalAccelRegistrar::onOwnerChanged);
}

KGlobalAccelRegistrar::~KGlobalAccelRegistrar() {
    release();
}

QFuture<HotKeyOutcome> KGlobalAccelRegistrar::grab(const Shortcut &shortcut, HotKeyOccasion) {
    release();
    QFuture<HotKeyOutcome> future = m_pending.begin();
    order(this, shortcut);
    return future;
}

void KGlobalAccelRegistrar::release() {
    ++m_round;
    m_taken.reset();
    m_pending.abandon();
    stopListening();
    if (std::exchange(m_isRegistered, false))
        m_bus.send(callOf(QStringLiteral("setInactive"), {actionId()}));
}

QCoro::Task<> KGlobalAccelRegistrar::order(Self self, Shortcut shortcut) {
    const std::uint64_t round = self->m_round;
    const HotKeyOutcome outcome = co_await take(self, shortcut);
    if (!self || self->m_round != round)
        co_return;
    self->m_pending.give(outcome);
    if (outcome)
        self->m_taken = shortcut;
    else
        self->release();
}

QCoro::Task<HotKeyOutcome> KGlobalAccelRegistrar::take(Self self, Shortcut shortcut) {
    const HotKeyOutcome abandoned = std::unexpected(HotKeyFailure::abandoned);
    const std::uint64_t round = self->m_round;
    const auto isOver = [&] { return !self || self->m_round != round; };
    const auto key = qtKeyCombination(shortcut);
    if (!key)
        co_return std::unexpected(HotKeyFailure::unknownKey);

    const QFuture<QDBusMessage> registering = self->ask(QStringLiteral("doRegister"), {actionId()});
    const QDBusMessage registered = co_await registering;
    if (isOver())
        co_return abandoned;
    if (registered.type() != QDBusMessage::ReplyMessage)
        co_return std::unexpected(isMissing(registered) ? HotKeyFailure::unavailable
                                                        : HotKeyFailure::refused);
    self->m_daemon = registered.service();
    self->m_isRegistered = true;

    const QFuture<QDBusMessage> finding = self->ask(QStringLiteral("getComponent"), {component});
    const QDBusMessage found = co_await finding;
    if (isOver())
        co_return abandoned;
    const QString path = found.arguments().value(0).value<QDBusObjectPath>().path();
    if (path.isEmpty())
        co_return std::unexpected(HotKeyFailure::refused);
    self->listenTo(path);

    // The action is there, and what the daemon remembers of it doesn't count.
    constexpr uint setPresent = 2;
    constexpr uint noAutoloading = 4;
    const QVariantList wanted{actionId(), QVariant::fromValue(QList<int>{*key}), setPresent | noAutoloading};
    const QFuture<QDBusMessage> setting = self->ask(QStringLiteral("setShortcut"), wanted);
    const QDBusMessage set = co_await setting;
    if (isOver())
        co_return abandoned;
    if (set.type() != QDBusMessage::ReplyMessage)
        co_return std::unexpected(HotKeyFailure::refused);
    if (!keysIn(set).contains(*key)) // the daemon leaves out what somebody else has
        co_return std::unexpected(HotKeyFailure::taken);
    co_return HotKeyOutcome();
}

QFuture<QDBusMessage> KGlobalAccelRegistrar::ask(const QString &method, const QVariantList &arguments) const {
    return askBus(m_bus, callOf(method, arguments));
}

/// Newer daemons tell a press in two ways, older ones in one of them. Who has told of more counts.
void KGlobalAccelRegistrar::listenTo(const QString &path) {
    stopListening();
    m_component = path;
    m_toldAsNew = m_toldAsOld = m_presses = 0;
    // No sender is named here: Qt would ask the bus for its owner and wait. The slots check it instead.
    m_bus.connect(QString(), path, componentInterface, QStringLiteral("globalShortcutPressed"), this,
                  SLOT(onGlobalShortcutPressed(QString, QString, qlonglong, QDBusMessage)));
    m_bus.connect(QString(), path, componentInterface, QStringLiteral("pressed"), this,
                  SLOT(onPressed(QString, QVariantMap, QDBusMessage)));
}

void KGlobalAccelRegistrar::stopListening() {
    const QString path = std::exchange(m_component, {});
    if (path.isEmpty())
        return;
    m_bus.disconnect(QString(), path, componentInterface, QStringLiteral("globalShortcutPressed"), this,
                     SLOT(onGlobalShortcutPressed(QString, QString, qlonglong, QDBusMessage)));
    m_bus.disconnect(QString(), path, componentInterface, QStringLiteral("pressed"), this,
                     SLOT(onPressed(QString, QVariantMap, QDBusMessage)));
}

bool KGlobalAccelRegistrar::isFromDaemon(const QDBusMessage &message) const {
    return m_taken && !m_daemon.isEmpty() && message.service() == m_daemon;
}

void KGlobalAccelRegistrar::onGlobalShortcutPressed(const QString &of, const QString &name, qlonglong,
                                                    const QDBusMessage &message) {
    if (isFromDaemon(message) && of == component && name == action)
        count(m_toldAsOld);
}

void KGlobalAccelRegistrar::onPressed(const QString &name, const QVariantMap &, const QDBusMessage &message) {
    if (isFromDaemon(message) && name == action)
        count(m_toldAsNew);
}

void KGlobalAccelRegistrar::count(std::uint64_t &presses) {
    if (++presses <= m_presses)
        return;
    m_presses = presses;
    if (onPress)
        onPress();
}

void KGlobalAccelRegistrar::onOwnerChanged(const QString &, const QString &before, const QString &after) {
    if (!before.isEmpty()) {
        m_daemon.clear();
        m_isRegistered = false;
        stopListening();
    }
    if (after.isEmpty() || !m_taken)
        return;
    const Shortcut lost = *m_taken;
    release();
    order(this, lost);
}

} // namespace tarnvale
