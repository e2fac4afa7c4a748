#pragma once

#include "discovery/ListeningPort.h"
#include "discovery/ProcessDetails.h"
#include "platform/Notifications.h"
#include "platform/Platform.h"
#include "platform/Workers.h"
#include "probes/HealthCheck.h"
#include "probes/LogSource.h"
#include "probes/WebPreviews.h"
#include "store/PortEvent.h"
#include "store/Stack.h"
#include "store/tunnelTools.h"

#include <QCoroTask>
#include <QFuture>
#include <QObject>
#include <QString>

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace tarnvale {

class CommandLauncher;
class HeldProcess;
class LaunchedCommand;
class RunningTool;

/// A port that is made public by a tool.
struct ActiveTunnel {
    TunnelTool tool = TunnelTool::cloudflared;
    std::shared_ptr<RunningTool> process;
    std::optional<std::string> url; ///< the public address, once the tool has told it
    std::string output;             ///< the tool's, its last 4000 characters at most

    bool operator==(const ActiveTunnel &) const = default;
};

/// How a port is asked for its health; see `HealthCheck::check`.
using HealthProbe = std::function<QFuture<HealthCheck::Result>(std::int64_t port, const std::string &path,
                                                               std::chrono::milliseconds timeout)>;

/// The latest scan and everything that follows from it: what the program knows, and what it can do.
///
/// One exists in the process. It scans from its creation on, for as long as it lives, and everything of it
/// belongs to the main thread. A flow may be dropped by its caller; it goes on, and ends at its next step
/// when the store is gone. Nothing throws and no action returns a failure: `error` tells the last one in
/// words.
class PortStore : public QObject {
    Q_OBJECT

public:
    /// Reads what is stored and begins to scan.
    explicit PortStore(const Platform &platform, HealthProbe probe = HealthCheck::check);
    PortStore(const PortStore &) = delete;
    PortStore &operator=(const PortStore &) = delete;
    /// Ends the tunnels. What was launched goes on. Waits for a scan that is under way.
    ~PortStore() override;

    // What it knows. Each has a signal below that tells of a change, and only of a change.

    [[nodiscard]] const std::vector<ListeningPort> &ports() const { return m_ports; }
    [[nodiscard]] std::vector<ListeningPort> visiblePorts() const;
    [[nodiscard]] bool showAll() const { return m_showAll; }
    [[nodiscard]] const std::optional<QString> &error() const { return m_error; }
    [[nodiscard]] bool isMenuOpen() const { return m_isMenuOpen; }
    [[nodiscard]] bool isWindowVisible() const { return m_isWindowVisible; }
    [[nodiscard]] bool launchAtLogin() const { return m_launchAtLogin; }
    [[nodiscard]] const std::set<std::int64_t> &watchedPorts() const { return m_watchedPorts; }
    /// Watched ports that have gone, and neither come back nor been seen to be gone.
    [[nodiscard]] const std::set<std::int64_t> &downWatchedPorts() const { return m_downWatchedPorts; }
    [[nodiscard]] const std::vector<Stack> &stacks() const { return m_stacks; }
    /// Newest first.
    [[nodiscard]] const std::vector<PortEvent> &events() const { return m_events; }
    /// The latest probe of a port, by `ListeningPort::id()`.
    [[nodiscard]] const std::map<std::string, Health> &health() const { return m_health; }
    /// In milliseconds, by `ListeningPort::id()`.
    [[nodiscard]] const std::map<std::string, std::int64_t> &responseTimes() const { return m_responseTimes; }
    /// What is asked for instead of "/", by the port in decimal.
    [[nodiscard]] const std::map<std::string, std::string> &healthPaths() const { return m_healthPaths; }
    /// The use of the processor at the last 40 scans, oldest first.
    [[nodiscard]] const std::map<Pid, std::vector<double>> &cpuHistory() const { return m_cpuHistory; }
    [[nodiscard]] const std::map<std::int64_t, ActiveTunnel> &tunnels() const { return m_tunnels; }
    [[nodiscard]] bool hasScanned() const { return m_hasScanned; }
    /// The machine is being asked right now.
    [[nodiscard]] bool isScanning() const { return m_questions > 0; }
    /// The pictures of what answers as a website; they are renewed while the window is visible.
    [[nodiscard]] WebPreviews &previews() { return m_previews; }

    /// The port is to be treated as a website, by what was learnt of it or else by its name and number.
    [[nodiscard]] bool isWebPort(const ListeningPort &port) const;
    /// Where the output of the port's process can be read; nothing when it can't.
    [[nodiscard]] std::optional<LogSource> logSource(const ListeningPort &port) const;
    /// The log of the port's command, had it been launched here.
    [[nodiscard]] std::optional<std::string> launchLog(const ListeningPort &port) const;

    void setShowAll(bool showAll);
    void setMenuOpen(bool isOpen);
    void setWindowVisible(bool isVisible);
    /// The user has seen which watched ports are down.
    void forgetDownWatchedPorts();
    /// For an action outside the store that has something to tell; with nothing, the user has read it.
    void setError(std::optional<QString> error);
    /// Brings up the main window.
    std::function<void()> openWindow = [] {};

    // The cycle.

    /// One scan and all that follows from it.
    QCoro::Task<> refresh();
    /// Probes the visible ports that are due.
    QCoro::Task<> refreshHealth();

    // What it does to ports. Nothing is signalled, stopped or restarted before the process was seen to be
    // still the one of the record.

    QCoro::Task<> stop(ListeningPort port);
    /// Stops those of `ports` that are a developer's plain processes.
    QCoro::Task<> stopVisible(std::vector<ListeningPort> ports);
    QCoro::Task<> restart(ListeningPort port);
    QCoro::Task<> relaunch(std::string args, std::string cwd);
    /// Stops what holds `port`, then launches.
    QCoro::Task<> killAndRetry(std::int64_t port, std::string args, std::string cwd);

    // Commands and stacks.

    /// What a launch may have beyond its command.
    struct LaunchOptions {
        std::optional<std::string> exec; ///< the shell runs this; the log is still named by the command
        std::optional<std::map<std::string, std::string>> environment;
    };
    /// Starts a command through the user's login shell; whether it could be started.
    bool launch(const std::string &args, const std::string &cwd, const LaunchOptions &options);
    QCoro::Task<> startStack(Stack stack);
    void saveStack(const std::string &name, std::vector<Stack::Command> commands);
    /// Saves all that runs in the folder of `port`.
    void saveStack(const ListeningPort &port);
    void deleteStack(const QUuid &id);

    // Watching, sharing and the rest.

    void toggleWatch(const ListeningPort &port);
    void requestNotificationAuthorization();
    void share(const ListeningPort &port);
    void stopSharing(std::int64_t port);
    void copyPublicURL(std::int64_t port);
    /// The tool that `share` would run.
    [[nodiscard]] std::optional<TunnelTool> tunnelTool() const;
    void setHealthPath(const std::string &path, const ListeningPort &port);
    void clearHistory();
    void setLaunchAtLogin(bool isEnabled);
    void openInBrowser(const ListeningPort &port);
    void copyURL(const ListeningPort &port);
    void copyPort(const ListeningPort &port);
    void copyPID(const ListeningPort &port);
    void copyText(const std::string &text);
    void focusHostApp(const ListeningPort &port);
    void reveal(const ListeningPort &port);
    /// Opens a log file in the desktop's program for such files; nothing when it isn't a plain file.
    void openInConsole(const std::string &path);
    /// Carries out what the user chose in a notification.
    void handleNotificationAction(const std::string &action, const NotificationPayload &payload);

Q_SIGNALS:
    void portsChanged();
    void showAllChanged();
    void errorChanged();
    void isMenuOpenChanged();
    void isWindowVisibleChanged();
    void launchAtLoginChanged();
    void watchedPortsChanged();
    void downWatchedPortsChanged();
    void stacksChanged();
    void eventsChanged();
    void healthChanged();
    void responseTimesChanged();
    void healthPathsChanged();
    void cpuHistoryChanged();
    void tunnelsChanged();

private:
    void readStored();
    void connectNotifications();
    QCoro::Task<> poll();

    void applyScan(std::vector<ListeningPort> ports);
    void recordUsage();
    void recordEvents(const std::vector<ListeningPort> &previous);
    void notifyWatchedStops(const std::vector<ListeningPort> &previous);
    struct DueCheck;
    std::vector<DueCheck> takeDueChecks();
    void applyHealth(const std::map<std::string, HealthCheck::Result> &results);
    void feedPreviews();

    struct HeldPort;
    [[nodiscard]] HeldPort hold(const ListeningPort &port) const;
    QCoro::Task<bool> verifySameProcess(ListeningPort port);
    QCoro::Task<ProcessDetailsMap> readDetails(std::vector<Pid> pids);
    QCoro::Task<> learnWhoseWatchedAre();
    bool sendTerminate(const ListeningPort &port, HeldProcess &process);
    QCoro::Task<> waitForWorker(std::shared_ptr<HeldProcess> worker);
    QCoro::Task<> runDocker(std::vector<std::string> arguments, std::chrono::milliseconds timeout);
    [[nodiscard]] std::string systemctl() const;
    QCoro::Task<> stopService(ListeningPort port);
    QCoro::Task<> restartService(ListeningPort port);
    QCoro::Task<> restartProcess(ListeningPort port, HeldPort held);
    QCoro::Task<> settleAndRefresh(std::chrono::milliseconds pause);

    void handleLaunchFailure(const std::string &args, const std::string &cwd);
    void tunnelOutput(const std::string &text, const std::shared_ptr<RunningTool> &process,
                      std::int64_t port);
    void tunnelExited(const std::shared_ptr<RunningTool> &process, std::int64_t port);
    void postNotification(const QString &title, const QString &body, std::optional<std::string> category = {},
                          std::optional<NotificationPayload> payload = {});

    void setStacks(std::vector<Stack> stacks);
    void setEvents(std::vector<PortEvent> events);
    /// Reports a value that could not be stored, once until one could.
    void noteStored(bool isStored);
    template<typename Field> void set(Field &field, Field value, void (PortStore::*changed)());

    Platform m_platform;
    HealthProbe m_probe;
    WebPreviews m_previews;
    Workers m_scanner{1}; ///< all use of the machine
    int m_questions = 0;  ///< to the machine, unanswered
    std::vector<ListeningPort> m_ports;
    std::optional<QString> m_error;
    std::set<std::int64_t> m_watchedPorts;
    std::set<std::int64_t> m_downWatchedPorts;
    /// The records, by id and start, of watched ports whose command may be run here.
    std::set<std::pair<std::string, std::optional<Instant>>> m_ourWatched;
    std::vector<Stack> m_stacks;
    std::vector<PortEvent> m_events;
    std::map<std::string, Health> m_health;
    std::map<std::string, std::int64_t> m_responseTimes;
    std::map<std::string, std::string> m_healthPaths;
    std::map<std::string, Instant> m_healthCheckedAt;
    std::map<Pid, std::vector<double>> m_cpuHistory;
    std::map<std::int64_t, ActiveTunnel> m_tunnels;
    std::vector<std::shared_ptr<LaunchedCommand>> m_launched;
    bool m_showAll = false;
    bool m_isMenuOpen = false;
    bool m_isWindowVisible = false;
    bool m_launchAtLogin = false;
    bool m_hasScanned = false;
    bool m_reportedUnstored = false;
};

} // namespace tarnvale
