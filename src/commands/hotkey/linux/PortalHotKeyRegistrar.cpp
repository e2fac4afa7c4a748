#include "commands/hotkey/linux/PortalHotKeyRegistrar.h"

#include "commands/hotkey/linux/askBus.h"
#include "commands/hotkey/linux/desktopTriggers.h"

#include <QCoreApplication>
#include <QCoroFuture>
#include <QDBusServiceWatcher>

namespace tarnvale {

namespace {

const QString applicationId = QStringLiteral("dev.tarnvale.Tarnvale");
const QString shortcutsInterface = QStringLiteral("org.freedesktop.portal.GlobalShortcuts");
const QString sessionInterface = QStringLiteral("org.freedesktop.portal.Session");

/// To make a session. After a restart of the portal Plasma's part of it, a program of its own, still has the
/// session of before, which bears the same name; its refusal clears that away.
constexpr int mostTries = 2;

HotKeyFailure failureOf(const PortalAnswer &answer) {
    return answer.kind == PortalAnswer::Kind::missing ? HotKeyFailure::unavailable : HotKeyFailure::refused;
}

/// What we ask for.
QList<PortalShortcut> listOf(const Shortcut &shortcut) {
    PortalShortcut ours{PortalHotKeyRegistrar::shortcutId,
                        {{QStringLiteral("description"),
                          QCoreApplication::translate("GlobalHotKey", "Open the menu bar panel")}}};
    if (const std::string trigger = portalTrigger(shortcut); !trigger.empty())
        ours.properties.insert(QStringLiteral("preferred_trigger"), QString::fromStdString(trigger));
    return {ours};
}

} // namespace

PortalHotKeyRegistrar::PortalHotKeyRegistrar(const QDBusConnection &bus)
    : m_bus(bus), m_requests(bus, shortcutsInterface) {
    registerPortalShortcuts();
    auto *watcher = new QDBusServiceWatcher(PortalRequests::service, m_bus,
                                            QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(watcher, &QDBusServiceWatcher::serviceOwnerChanged, this, &PortalHotKeyRegistrar::onOwnerChanged);
    // No sender is named here: Qt would ask the bus for its owner and wait. The slots check it instead.
    m_bus.connect(QString(), PortalRequests::object, shortcutsInterface, QStringLiteral("Activated"), this,
                  SLOT(onActivated(QDBusObjectPath, QString, qulonglong, QVariantMap, QDBusMessage)));
    m_bus.connect(QString(), PortalRequests::object, shortcutsInterface, QStringLiteral("ShortcutsChanged"),
                  this, SLOT(onChanged(QDBusObjectPath, QDBusMessage)));
}

PortalHotKeyRegistrar::~PortalHotKeyRegistrar() {
    release();
}

QFuture<HotKeyOutcome> PortalHotKeyRegistrar::grab(const Shortcut &shortcut, HotKeyOccasion occasion) {
    release();
    QFuture<HotKeyOutcome> future = m_pending.begin();
    order(this, shortcut, occasion);
    return future;
}

void PortalHotKeyRegistrar::release() {
    ++m_round;
    m_bound.reset();
    m_trigger.clear();
    m_requests.abandon();
    m_pending.abandon();
    if (!m_session.isEmpty())
        m_bus.send(QDBusMessage::createMethodCall(PortalRequests::service, m_session, sessionInterface,
                                                  QStringLiteral("Close")));
    forgetSession();
}

HotKeyAvailability PortalHotKeyRegistrar::availability() const {
    return {.kind = HotKeyAvailability::Kind::desktopDecides, .trigger = m_trigger};
}

QCoro::Task<> PortalHotKeyRegistrar::order(Self self, Shortcut shortcut, HotKeyOccasion occasion) {
    const std::uint64_t round = self->m_round;
    const HotKeyOutcome outcome = co_await bind(self, shortcut, occasion);
    if (!self || self->m_round != round)
        co_return;
    self->m_pending.give(outcome);
    if (outcome)
        self->m_bound = shortcut;
    else
        self->release();
}

/// A session takes one binding, so each order has its own; their names are always the same, because some
/// desktops know us by that alone.
QCoro::Task<HotKeyOutcome> PortalHotKeyRegistrar::bind(Self self, Shortcut shortcut,
                                                       HotKeyOccasion occasion) {
    const HotKeyOutcome abandoned = std::unexpected(HotKeyFailure::abandoned);
    const std::uint64_t round = self->m_round;
    const auto isOver = [&] { return !self || self->m_round != round; };

    const QFuture<QDBusMessage> introducing = self->introduceOurselves();
    co_await introducing;
    if (isOver())
        co_return abandoned;

    PortalAnswer session{.kind = PortalAnswer::Kind::refused};
    for (int tries = 0; tries < mostTries && session.kind == PortalAnswer::Kind::refused; ++tries) {
        const QFuture<PortalAnswer> creating = self->createSession(shortcut);
        session = co_await creating;
        if (isOver())
            co_return abandoned;
    }
    if (!self->openSession(session))
        co_return std::unexpected(failureOf(session));

    if (occasion != HotKeyOccasion::userChoice) {
        if (self->takeBinding(session))
            co_return HotKeyOutcome();
        const QFuture<PortalAnswer> listing = self->listShortcuts();
        const PortalAnswer list = co_await listing;
        if (isOver())
            co_return abandoned;
        if (self->takeBinding(list))
            co_return HotKeyOutcome();
        if (occasion == HotKeyOccasion::takeBack)
            co_return std::unexpected(failureOf(list));
    }

    const QFuture<PortalAnswer> binding = self->bindShortcut(shortcut);
    const PortalAnswer bound = co_await binding;
    if (isOver())
        co_return abandoned;
    if (self->takeBinding(bound))
        co_return HotKeyOutcome();
    co_return std::unexpected(failureOf(bound));
}

/// Tells newer portals which application a program outside of a sandbox is; others don't know the call. Any
/// answer says as well that the session before has been closed.
QFuture<QDBusMessage> PortalHotKeyRegistrar::introduceOurselves() {
    QDBusMessage call = QDBusMessage::createMethodCall(PortalRequests::service, PortalRequests::object,
                                                       QStringLiteral("org.freedesktop.host.portal.Registry"),
                                                       QStringLiteral("Register"));
    call << applicationId << QVariantMap();
    return askBus(m_bus, call);
}

QFuture<PortalAnswer> PortalHotKeyRegistrar::createSession(const Shortcut &shortcut) {
    return m_requests.send(QStringLiteral("CreateSession"), {},
                           {{QStringLiteral("session_handle_token"), QStringLiteral("tarnvale")},
                            {QStringLiteral("shortcuts"), QVariant::fromValue(listOf(shortcut))}});
}

QFuture<PortalAnswer> PortalHotKeyRegistrar::listShortcuts() {
    return m_requests.send(QStringLiteral("ListShortcuts"),
                           {QVariant::fromValue(QDBusObjectPath(m_session))});
}

QFuture<PortalAnswer> PortalHotKeyRegistrar::bindShortcut(const Shortcut &shortcut) {
    const QString noParentWindow;
    return m_requests.send(QStringLiteral("BindShortcuts"),
                           {QVariant::fromValue(QDBusObjectPath(m_session)),
                            QVariant::fromValue(listOf(shortcut)), noParentWindow});
}

bool PortalHotKeyRegistrar::openSession(const PortalAnswer &answer) {
    const QVariant handle = answer.results.value(QStringLiteral("session_handle"));
    const QString path = handle.metaType() == QMetaType::fromType<QDBusObjectPath>()
                             ? handle.value<QDBusObjectPath>().path()
                             : handle.toString();
    if (answer.kind != PortalAnswer::Kind::granted || !path.startsWith(QLatin1Char('/')))
        return false;
    m_session = path;
    m_bus.connect(QString(), m_session, sessionInterface, QStringLiteral("Closed"), this,
                  SLOT(onClosed(QDBusMessage)));
    return true;
}

void PortalHotKeyRegistrar::forgetSession() {
    if (!m_session.isEmpty())
        m_bus.disconnect(QString(), m_session, sessionInterface, QStringLiteral("Closed"), this,
                         SLOT(onClosed(QDBusMessage)));
    m_session.clear();
}

/// Whether our shortcut is among those that `answer` tells.
bool PortalHotKeyRegistrar::takeBinding(const PortalAnswer &answer) {
    const auto ours = findShortcut(answer.results.value(QStringLiteral("shortcuts")), shortcutId);
    if (answer.kind != PortalAnswer::Kind::granted || !ours)
        return false;
    setTrigger(*ours);
    return true;
}

void PortalHotKeyRegistrar::setTrigger(const PortalShortcut &shortcut) {
    constexpr qsizetype mostCharacters = 100;
    const QString text = shortcut.properties.value(QStringLiteral("trigger_description")).toString();
    m_trigger = text.left(mostCharacters).toStdString();
}

bool PortalHotKeyRegistrar::isFromSession(const QString &session, const QDBusMessage &message) const {
    return !m_session.isEmpty() && session == m_session && message.service() == m_requests.portal();
}

void PortalHotKeyRegistrar::onActivated(const QDBusObjectPath &session, const QString &id, qulonglong,
                                        const QVariantMap &, const QDBusMessage &message) {
    if (isFromSession(session.path(), message) && id == shortcutId && m_bound && onPress)
        onPress();
}

void PortalHotKeyRegistrar::onChanged(const QDBusObjectPath &session, const QDBusMessage &message) {
    const auto ours = findShortcut(message.arguments().value(1), shortcutId);
    if (!isFromSession(session.path(), message) || !ours)
        return;
    setTrigger(*ours);
    if (onAvailabilityChange)
        onAvailabilityChange();
}

void PortalHotKeyRegistrar::onClosed(const QDBusMessage &message) {
    if (!isFromSession(message.path(), message))
        return;
    forgetSession();
    release();
}

void PortalHotKeyRegistrar::onOwnerChanged(const QString &, const QString &before, const QString &after) {
    if (!before.isEmpty()) {
        forgetSession();
        m_requests.abandon();
    }
    if (after.isEmpty() || !m_bound)
        return;
    const Shortcut lost = *m_bound;
    release();
    order(this, lost, HotKeyOccasion::start);
}

} // namespace tarnvale
