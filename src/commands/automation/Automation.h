#pragma once

#include "commands/automation/ApplicationService.h"
#include "commands/automation/ShortcutQueue.h"

#include <QDBusConnection>
#include <QObject>

namespace tarnvale {

/// All that other programs meet of the application, in the order in which a start needs it:
///
///     Automation automation(desktop, QDBusConnection::sessionBus());
///     SingleInstance instance(automation.application(), bus);
///     if (const auto status = instance.start(request))
///         return *status;
///     PortStore store(platform);
///     automation.start(store, actions);
///
/// Calls that arrive between are kept until the start (`Activate` and actions), or answered as far as that
/// goes without a store. Main thread.
class Automation {
public:
    /// Registers the objects on `bus`; a bus that isn't connected is left alone. `desktop` outlives this.
    Automation(Desktop &desktop, const QDBusConnection &bus);
    Automation(const Automation &) = delete;
    Automation &operator=(const Automation &) = delete;
    ~Automation();

    /// What lists come from while there is no store.
    void setScan(PortScan scan) { m_target.scan = std::move(scan); }

    /// The application has started.
    void start(PortStore &store, const ApplicationActions &actions);

    [[nodiscard]] ApplicationService &application() { return *m_application; }
    [[nodiscard]] ShortcutQueue &queue() { return m_queue; }

private:
    void addSearch();

    ShortcutTarget m_target;
    ShortcutQueue m_queue{m_target};
    QDBusConnection m_bus;
    std::function<void(const QString &)> m_tell;
    QObject m_root;
    QObject m_search;
    QObject m_runner;
    ApplicationService *m_application;
};

} // namespace tarnvale
