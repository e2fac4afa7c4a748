// "localhost" means the loopback addresses of both families, whatever a resolver would say (RFC 6761, section
// 6.3). A development server often listens on one of them alone, so both are tried: the second as soon as the
// first has failed, or when the first hasn't connected for a while (RFC 8305 does the same for host names).
// The first connection that stands is the only one that is spoken to.

#include "probes/HealthCheck.h"

#include "probes/classifyReply.h"
#include "probes/isValidHealthPath.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QHostAddress>
#include <QNetworkProxy>
#include <QPromise>
#include <QTcpSocket>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

namespace tarnvale::HealthCheck {

namespace {

constexpr qint64 longestChunk = 64;
constexpr std::array addresses{QHostAddress::LocalHostIPv6, QHostAddress::LocalHost};

QByteArray requestFor(const std::string &path) {
    const std::string asked = isValidHealthPath(path) ? path : "/";
    return QByteArray::fromStdString("GET " + asked +
                                     " HTTP/1.0\r\nHost: localhost\r\nConnection: close\r\n\r\n");
}

/// One check. It belongs to the application and deletes itself at the outcome.
class Probe : public QObject {
public:
    Probe(quint16 port, QByteArray request)
        : QObject(QCoreApplication::instance()), m_port(port), m_request(std::move(request)) {
        m_watch.start();
        m_promise.start();
    }
    Probe(const Probe &) = delete;
    Probe &operator=(const Probe &) = delete;
    ~Probe() override { finish(Health::unknown()); }

    [[nodiscard]] QFuture<Result> future() const { return m_promise.future(); }

    void begin(std::chrono::milliseconds timeout) {
        after(timeout, [this] { finish(Health::noResponse()); });
        tryNextAddress();
    }

private:
    /// Takes `step` when `time` has passed, as long as this object lives.
    template<typename Step> void after(std::chrono::milliseconds time, Step step) {
        auto *timer = new QTimer(this);
        timer->setSingleShot(true);
        timer->setTimerType(Qt::PreciseTimer);
        connect(timer, &QTimer::timeout, this, std::move(step));
        timer->start(time);
    }

    void tryNextAddress() {
        constexpr std::chrono::milliseconds headStart{250};
        if (m_isFinished || m_chosen != nullptr || m_nextAddress == addresses.size())
            return;
        const QHostAddress address(addresses.at(m_nextAddress++));
        after(headStart, [this] { tryNextAddress(); });
        connectTo(address);
    }

    void connectTo(const QHostAddress &address) {
        auto *socket = new QTcpSocket(this);
        m_pending.push_back(socket);
        socket->setProxy(QNetworkProxy::NoProxy);
        socket->setReadBufferSize(longestChunk);
        connect(socket, &QTcpSocket::connected, this, [this, socket] { choose(socket); });
        connect(socket, &QTcpSocket::readyRead, this, [this, socket] { read(*socket); });
        connect(socket, &QTcpSocket::errorOccurred, this, [this, socket] { drop(socket); });
        socket->connectToHost(address, m_port);
    }

    void choose(QTcpSocket *socket) {
        if (m_isFinished || m_chosen != nullptr)
            return;
        m_chosen = socket;
        for (QTcpSocket *other : m_pending)
            if (other != socket)
                close(*other);
        if (socket->write(m_request) != m_request.size())
            finish(Health::unknown());
    }

    void read(QTcpSocket &socket) {
        const QByteArray chunk = socket.read(longestChunk);
        if (!chunk.isEmpty())
            finish(classifyReply({chunk.constData(), static_cast<std::size_t>(chunk.size())}));
    }

    /// What has failed before it was chosen leaves the question to the other address.
    void drop(QTcpSocket *socket) {
        if (socket == m_chosen)
            return finish(Health::unknown());
        std::erase(m_pending, socket);
        tryNextAddress();
        if (m_chosen == nullptr && m_pending.empty())
            finish(Health::unknown());
    }

    void close(QTcpSocket &socket) {
        socket.disconnect(this);
        socket.abort();
    }

    /// The first outcome stands.
    void finish(Health health) {
        if (std::exchange(m_isFinished, true))
            return;
        for (QTcpSocket *socket : m_pending)
            close(*socket);
        Result result{health, std::nullopt};
        if (health.kind == Health::Kind::responding || health.kind == Health::Kind::serverError)
            result.milliseconds = m_watch.elapsed();
        m_promise.addResult(result);
        m_promise.finish();
        deleteLater();
    }

    quint16 m_port;
    QByteArray m_request;
    QElapsedTimer m_watch;
    QPromise<Result> m_promise;
    std::vector<QTcpSocket *> m_pending; ///< children of this object that haven't failed
    QTcpSocket *m_chosen = nullptr;      ///< the one that connected first
    std::size_t m_nextAddress = 0;
    bool m_isFinished = false;
};

} // namespace

QFuture<Result> check(std::int64_t port, const std::string &path, std::chrono::milliseconds timeout) {
    Q_ASSERT(QThread::currentThread() == QCoreApplication::instance()->thread());
    constexpr std::int64_t highestPort = 65535;
    const auto number = static_cast<quint16>(std::clamp<std::int64_t>(port, 0, highestPort));
    auto *probe = new Probe(number, requestFor(path));
    QFuture<Result> future = probe->future();
    probe->begin(timeout);
    return future;
}

} // namespace tarnvale::HealthCheck
