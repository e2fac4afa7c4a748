#pragma once

#include "discovery/FileDescriptor.h"
#include "discovery/ListeningPort.h"

#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QObject>
#include <QTimer>

#include <chrono>
#include <string>

namespace tarnvale {

/// Asks the user's service manager to take a process into a scope of its own (org.freedesktop.systemd1(5)),
/// so that it outlives the unit that this program runs in. The process waits meanwhile for the end of a pipe.
///
/// The object deletes itself when that is settled.
class LaunchScope : public QObject {
    Q_OBJECT
public:
    struct Request {
        Pid pid = 0;
        std::string description;
        FileDescriptor gate; ///< the pipe's other end
        std::chrono::milliseconds limit = std::chrono::seconds(1);
    };

    /// Closes the gate when the process is in its scope, when it is sure to get none, or after the limit.
    LaunchScope(QDBusConnection bus, Request request, QObject *parent);

private Q_SLOTS:
    void onJobRemoved(uint id, const QDBusObjectPath &job, const QString &unit, const QString &result);

private:
    void ask(const std::string &description);
    void settle();

    QDBusConnection m_bus;
    Pid m_pid;
    FileDescriptor m_gate;
    QString m_unit;
    QTimer m_limit;
};

} // namespace tarnvale
