#pragma once

#include "support/TemporaryFolder.h"
#include "support/TestProcess.h"

#include <QDBusConnection>
#include <QStringList>

#include <memory>
#include <string>
#include <vector>

namespace tarnvale {

/// A message bus of a test's own, on which nothing is started by itself. Skip the test when it isn't running:
/// then the machine has no `dbus-daemon`.
class PrivateBus {
public:
    PrivateBus();
    PrivateBus(const PrivateBus &) = delete;
    PrivateBus &operator=(const PrivateBus &) = delete;
    ~PrivateBus();

    [[nodiscard]] bool isRunning() const { return m_daemon != nullptr; }
    [[nodiscard]] std::string address() const { return "unix:path=" + m_folder.path("bus"); }

    /// A new connection, closed with the bus.
    [[nodiscard]] QDBusConnection connect();

    /// All that was sent over these connections so far has arrived at them and been handled.
    void settle() const;

    /// The bus goes away under its connections.
    void stop() { m_daemon.reset(); }

private:
    TemporaryFolder m_folder;
    std::unique_ptr<TestProcess> m_daemon;
    QStringList m_names;
};

} // namespace tarnvale
