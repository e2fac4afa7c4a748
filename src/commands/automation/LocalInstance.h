#pragma once

#include "commands/automation/ApplicationRequest.h"
#include "commands/automation/Claim.h"

#include <QLocalServer>
#include <QLockFile>
#include <QObject>

#include <chrono>
#include <optional>

class QLocalSocket;

namespace tarnvale {

class ApplicationService;

/// The one application of a user's session where there is no session bus: a lock file, and a socket beside it
/// on which the first takes the requests of the others, a line each (`requestLine`). The answer is the line
/// "done", or why not.
class LocalInstance : public QObject {
    Q_OBJECT
public:
    /// `folder` must be the user's alone. `service` carries the requests out, and outlives this.
    LocalInstance(ApplicationService &service, const QString &folder);
    LocalInstance(const LocalInstance &) = delete;
    LocalInstance &operator=(const LocalInstance &) = delete;
    ~LocalInstance() override;

    /// Becomes the first for as long as this lives; if another one is, asks it for `request`, if there is
    /// one. Blocks as `claimOnBus` does.
    [[nodiscard]] Claim claim(const std::optional<ApplicationRequest> &request,
                              std::chrono::milliseconds patience);

    /// How many others may be connected at once.
    static constexpr int mostConnections = 32;

private:
    [[nodiscard]] bool listen();
    void takeConnections();
    void readFrom(QLocalSocket *socket);

    ApplicationService &m_service;
    QString m_socketPath;
    QLockFile m_lock;
    int m_connections = 0; ///< told by the sockets of the server, also when it goes
    QLocalServer m_server;
};

/// A folder for this that only the user can enter: `$XDG_RUNTIME_DIR`, else one with the user's number in its
/// name below `temporary`, made if need be. Nothing when somebody else sits on that name.
[[nodiscard]] std::optional<QString> instanceFolder(const QString &temporary);

} // namespace tarnvale
