#include "presentation/settings/DesktopFactsReader.h"

#include "commands/hotkey/GlobalHotKey.h"
#include "commands/hotkey/keycaps.h"
#include "discovery/text.h"
#include "presentation/design/isComposited.h"
#include "presentation/plainText.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace tarnvale {

namespace {

const QString service = QStringLiteral("org.freedesktop.Notifications");

/// A word of the server's, which may be anything.
QString word(const QString &text) {
    constexpr std::size_t longest = 40;
    return plainText(firstCharacters(text.toStdString(), longest)).trimmed();
}

} // namespace

DesktopFactsReader::DesktopFactsReader(const QDBusConnection &bus, const TrayIcon &tray,
                                       const GlobalHotKey &hotKey)
    : m_bus(bus),
      m_tray(tray),
      m_hotKey(hotKey),
      m_watcher(service, bus, QDBusServiceWatcher::WatchForOwnerChange) {
    connect(&tray, &TrayIcon::kindChanged, this, &DesktopFactsReader::read);
    connect(&hotKey, &GlobalHotKey::currentChanged, this, &DesktopFactsReader::read);
    connect(&hotKey, &GlobalHotKey::availabilityChanged, this, &DesktopFactsReader::read);
    connect(&m_watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
            &DesktopFactsReader::askForNotifications);
    read();
    askForNotifications();
}

void DesktopFactsReader::read() {
    DesktopFacts facts = m_facts;
    facts.tray = m_tray.kind();
    facts.hotKey = m_hotKey.availability();
    facts.hasHotKey = m_hotKey.isTaken();
    facts.hotKeyLabel = displayText(m_hotKey.current().display);
    facts.isComposited = isComposited();
    set(facts);
}

void DesktopFactsReader::set(const DesktopFacts &facts) {
    if (m_facts == facts)
        return;
    m_facts = facts;
    Q_EMIT changed();
}

/// A server that isn't running yet is started by the question, where the desktop knows one.
void DesktopFactsReader::askForNotifications() {
    constexpr int patience = 5000; // milliseconds
    if (!m_bus.isConnected()) {    // nothing would ever answer
        setNotifications(DesktopFacts::Notifications::missing, {});
        return;
    }
    const auto call =
        QDBusMessage::createMethodCall(service, QStringLiteral("/org/freedesktop/Notifications"), service,
                                       QStringLiteral("GetServerInformation"));
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call, patience), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, question = ++m_question] {
        watcher->deleteLater();
        takeAnswer(*watcher, question);
    });
}

void DesktopFactsReader::takeAnswer(const QDBusPendingCallWatcher &call, std::uint64_t question) {
    if (question != m_question)
        return;
    const QDBusPendingReply<QString, QString, QString, QString> reply(
        call); // name, maker, version, of protocol
    if (reply.isValid())
        setNotifications(
            DesktopFacts::Notifications::found,
            (word(reply.argumentAt<0>()) + QLatin1Char(' ') + word(reply.argumentAt<2>())).trimmed());
    else
        setNotifications(DesktopFacts::Notifications::missing, {});
}

void DesktopFactsReader::setNotifications(DesktopFacts::Notifications state, const QString &server) {
    DesktopFacts facts = m_facts;
    facts.notifications = state;
    facts.notificationServer = server;
    set(facts);
}

} // namespace tarnvale
