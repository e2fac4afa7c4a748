// Watched ports, and the notifications that lead back here.

#include "discovery/Machine.h"
#include "platform/Clock.h"
#include "platform/Desktop.h"
#include "platform/Settings.h"
#include "store/PortStore.h"
#include "store/set.h"
#include "store/settingsKeys.h"

#include <QPointer>
#include <QUrl>

namespace tarnvale {

namespace {

constexpr const char *portConflict = "portConflict";
constexpr const char *watchedPortStopped = "watchedPortStopped";
constexpr const char *tunnelReady = "tunnelReady";
constexpr const char *killAndRetryAction = "killAndRetry";
constexpr const char *showAction = "show";
constexpr const char *relaunchAction = "relaunch";
constexpr const char *openPublicURLAction = "openPublicURL";

std::vector<NotificationCategory> categories() {
    const auto action = [](const char *id, const QString &title) {
        return NotificationAction{id, title.toStdString()};
    };
    return {{portConflict,
             {action(killAndRetryAction, PortStore::tr("Kill Holder & Retry")),
              action(showAction, PortStore::tr("Show in Tarnvale"))}},
            {watchedPortStopped, {action(relaunchAction, PortStore::tr("Start Again"))}},
            {tunnelReady, {action(openPublicURLAction, PortStore::tr("Open in Browser"))}}};
}

bool canStartAgain(const ListeningPort &port) {
    return port.hasProject() && !port.service && !port.container && port.args;
}

} // namespace

void PortStore::connectNotifications() {
    m_platform.notifications.setCategories(categories());
    m_platform.notifications.onAction =
        [alive = QPointer<PortStore>(this)](const std::string &action, const NotificationPayload &payload) {
            if (alive)
                alive->handleNotificationAction(action, payload);
        };
}

void PortStore::requestNotificationAuthorization() {
    m_platform.notifications.requestAuthorization();
}

void PortStore::postNotification(const QString &title, const QString &body,
                                 std::optional<std::string> category,
                                 std::optional<NotificationPayload> payload) {
    m_platform.notifications.post({.title = title.toStdString(),
                                   .body = body.toStdString(),
                                   .category = std::move(category),
                                   .payload = std::move(payload)});
}

void PortStore::toggleWatch(const ListeningPort &port) {
    auto down = m_downWatchedPorts;
    down.erase(port.port);
    set(m_downWatchedPorts, std::move(down), &PortStore::downWatchedPortsChanged);
    auto watched = m_watchedPorts;
    const bool isNew = watched.erase(port.port) == 0;
    if (isNew) {
        watched.insert(port.port);
        requestNotificationAuthorization();
    }
    set(m_watchedPorts, std::move(watched), &PortStore::watchedPortsChanged);
    noteStored(
        m_platform.settings.setIntegers(keys::watchedPorts, {m_watchedPorts.begin(), m_watchedPorts.end()}));
    learnWhoseWatchedAre();
}

/// Finds out, while they run, which of the watched servers may be started again: only this user's own, since
/// whoever can choose a command line must not choose what this user runs.
QCoro::Task<> PortStore::learnWhoseWatchedAre() {
    const QPointer<PortStore> alive(this);
    std::set<std::pair<std::string, std::optional<Instant>>> known;
    std::vector<ListeningPort> fresh;
    for (const ListeningPort &port : m_ports) {
        if (!m_watchedPorts.contains(port.port) || !canStartAgain(port))
            continue;
        if (std::pair key(port.id(), port.startedAt); m_ourWatched.contains(key))
            known.insert(std::move(key));
        else
            fresh.push_back(port);
    }
    m_ourWatched = std::move(known);
    if (fresh.empty())
        co_return;
    const ProcessDetailsMap details = co_await readDetails(pidsOf(fresh));
    if (!alive)
        co_return;
    for (const ListeningPort &port : fresh) {
        const auto found = details.find(port.pid);
        if (found != details.end() && !found->second.isForeign &&
            isSameProcess(port, found->second, m_platform.clock.now()))
            m_ourWatched.emplace(port.id(), port.startedAt);
    }
}

/// Tells of the watched ports that have gone since the previous scan. A port that another process has taken
/// over has not gone.
void PortStore::notifyWatchedStops(const std::vector<ListeningPort> &previous) {
    if (m_watchedPorts.empty())
        return;
    std::set<std::int64_t> known; // those that listen, then also those that were told
    for (const ListeningPort &port : m_ports)
        known.insert(port.port);
    auto down = m_downWatchedPorts;
    for (const ListeningPort &port : previous) {
        if (!m_watchedPorts.contains(port.port) || !known.insert(port.port).second)
            continue;
        down.insert(port.port);
        const QString name = QString::fromStdString(port.projectName().value_or(port.command));
        postNotification(
            tr("Port %1 stopped").arg(port.port), tr("%1 is no longer listening.").arg(name),
            m_ourWatched.contains({port.id(), port.startedAt})
                ? std::optional<std::string>(watchedPortStopped)
                : std::nullopt,
            NotificationPayload{.port = port.port, .args = port.args, .cwd = port.cwd, .url = {}});
    }
    set(m_downWatchedPorts, std::move(down), &PortStore::downWatchedPortsChanged);
}

void PortStore::handleNotificationAction(const std::string &action, const NotificationPayload &payload) {
    const bool hasCommand = payload.args && payload.cwd;
    if (action == killAndRetryAction && payload.port && hasCommand)
        killAndRetry(*payload.port, *payload.args, *payload.cwd);
    else if (action == relaunchAction && hasCommand)
        relaunch(*payload.args, *payload.cwd);
    else if (action == openPublicURLAction && payload.url) {
        const QUrl url(QString::fromStdString(*payload.url), QUrl::StrictMode);
        if (url.isValid() && url.scheme() == QLatin1StringView("https"))
            m_platform.desktop.openUrl(*payload.url);
    } else if (action == showAction || action == defaultNotificationAction)
        openWindow();
}

} // namespace tarnvale
