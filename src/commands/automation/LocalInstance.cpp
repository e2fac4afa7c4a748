#include "commands/automation/LocalInstance.h"

#include "commands/automation/ApplicationService.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QLocalSocket>
#include <QPointer>
#include <QTimer>

#include <algorithm>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace tarnvale {

namespace {

using namespace std::chrono_literals;

const QByteArray doneLine = QByteArrayLiteral("done\n");

bool isOnlyOurs(const QByteArray &folder) {
    struct stat status {};
    constexpr mode_t others = S_IRWXG | S_IRWXO;
    return lstat(folder.constData(), &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == geteuid() &&
           (status.st_mode & others) == 0;
}

int timeLeft(const QDeadlineTimer &deadline) {
    return static_cast<int>(std::max<qint64>(deadline.remainingTime(), 1));
}

/// The answer to `request` by who listens at `path`; nothing when nobody does, or none came in time.
std::optional<QByteArray> ask(const QString &path, const ApplicationRequest &request,
                              const QDeadlineTimer &deadline) {
    constexpr qint64 longestAnswer = 1024;
    QLocalSocket socket;
    socket.connectToServer(path);
    if (!socket.waitForConnected(timeLeft(deadline)))
        return std::nullopt;
    socket.write(requestLine(request));
    while (!socket.canReadLine() && socket.bytesAvailable() < longestAnswer)
        if (!socket.waitForReadyRead(timeLeft(deadline)))
            return std::nullopt;
    return socket.readLine(longestAnswer);
}

} // namespace

LocalInstance::LocalInstance(ApplicationService &service, const QString &folder)
    : m_service(service),
      m_socketPath(folder + QStringLiteral("/tarnvale.socket")),
      m_lock(folder + QStringLiteral("/tarnvale.lock")) {
    m_lock.setStaleLockTime(0); // held until its process ends, however long that takes
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&m_server, &QLocalServer::newConnection, this, &LocalInstance::takeConnections);
}

LocalInstance::~LocalInstance() {
    m_server.close(); // before the lock goes: the socket's name belongs to its holder
}

Claim LocalInstance::claim(const std::optional<ApplicationRequest> &request,
                           std::chrono::milliseconds patience) {
    constexpr auto pause = 20ms;
    const QDeadlineTimer deadline(patience);
    while (true) {
        if (m_lock.tryLock(0))
            return {listen() ? Claim::Kind::taken : Claim::Kind::unavailable, {}};
        if (m_lock.error() != QLockFile::LockFailedError)
            return {Claim::Kind::unavailable, {}};
        if (!request)
            return {Claim::Kind::answered, {}};
        if (deadline.hasExpired())
            return {Claim::Kind::silent, {}};
        if (const auto answer = ask(m_socketPath, *request, deadline))
            return *answer == doneLine ? Claim{Claim::Kind::answered, {}}
                                       : Claim{Claim::Kind::refused, QString::fromUtf8(*answer).trimmed()};
        std::this_thread::sleep_for(pause); // it may not listen yet, or have gone
    }
}

bool LocalInstance::listen() {
    QLocalServer::removeServer(m_socketPath); // what a holder of the lock that crashed left
    return m_server.listen(m_socketPath);
}

void LocalInstance::takeConnections() {
    while (QLocalSocket *socket = m_server.nextPendingConnection()) {
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        connect(socket, &QObject::destroyed, this, [this] { --m_connections; });
        if (++m_connections > mostConnections) {
            socket->abort();
            continue;
        }
        constexpr auto longestSilence = 10s;
        QTimer::singleShot(longestSilence, socket, &QLocalSocket::abort);
        connect(socket, &QLocalSocket::readyRead, this, [this, socket] { readFrom(socket); });
        readFrom(socket);
    }
}

void LocalInstance::readFrom(QLocalSocket *socket) {
    if (!socket->canReadLine()) {
        if (socket->bytesAvailable() > longestRequestLine)
            socket->abort();
        return;
    }
    disconnect(socket, &QLocalSocket::readyRead, this, nullptr); // one request each
    const auto request = parseRequestLine(socket->readLine(longestRequestLine + 2));
    if (!request) {
        socket->abort();
        return;
    }
    m_service.perform(*request, [socket = QPointer(socket)](const ApplicationService::Outcome &outcome) {
        if (!socket)
            return;
        socket->write(outcome ? doneLine : outcome.error().text.toUtf8() + '\n');
        socket->disconnectFromServer();
    });
}

std::optional<QString> instanceFolder(const QString &temporary) {
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (runtime.startsWith(QLatin1Char('/')) && isOnlyOurs(QFile::encodeName(runtime)))
        return runtime;
    const QString ours = QStringLiteral("%1/tarnvale-%2").arg(temporary).arg(geteuid());
    const QByteArray path = QFile::encodeName(ours);
    mkdir(path.constData(), S_IRWXU); // it may be there
    return isOnlyOurs(path) ? std::optional(ours) : std::nullopt;
}

} // namespace tarnvale
