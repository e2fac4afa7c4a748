#pragma once

#include "updates/UpdateFailure.h"

#include <QByteArray>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QObject>
#include <QSslConfiguration>
#include <QTimer>
#include <QUrl>

#include <chrono>
#include <cstdint>
#include <expected>
#include <functional>
#include <memory>

namespace tarnvale {

/// One file read from an HTTPS server. A few redirections are followed, to HTTPS only. Nothing is sent but
/// the request: no cookies, no password. Main thread.
class HttpsFetch : public QObject {
    Q_OBJECT

public:
    struct Limits {
        std::int64_t bytes = 0;
        std::chrono::milliseconds silence{30'000}; ///< for how long nothing may come
        std::chrono::milliseconds whole{0};        ///< for the whole answer; 0: as long as it takes
    };
    using Outcome = std::expected<void, UpdateFailure>;
    /// Given each piece of the answer; a failure ends the fetch.
    using Take = std::function<Outcome(const QByteArray &)>;

    HttpsFetch(const QSslConfiguration &tls, Limits limits, Take take);
    HttpsFetch(const HttpsFetch &) = delete;
    HttpsFetch &operator=(const HttpsFetch &) = delete;
    ~HttpsFetch() override;

    /// Begins, once.
    void start(const QUrl &url);
    void cancel() { end(std::unexpected(UpdateFailure{UpdateFailure::Kind::cancelled, {}})); }

Q_SIGNALS:
    /// The end, told once, by `start` itself when the address is refused.
    void ended(const tarnvale::HttpsFetch::Outcome &outcome);

private:
    [[nodiscard]] int status() const;
    [[nodiscard]] UpdateFailure::Kind failureOf(QNetworkReply::NetworkError error) const;
    void checkAnswer();
    void takeSome();
    void conclude();
    void end(const Outcome &outcome);
    void fail(UpdateFailure::Kind kind) { end(std::unexpected(UpdateFailure{kind, {}})); }

    QSslConfiguration m_tls;
    Limits m_limits;
    Take m_take;
    QNetworkAccessManager m_network;
    QTimer m_deadline;
    QNetworkReply *m_reply = nullptr; ///< a child of `m_network`
    std::int64_t m_received = 0;
    bool m_hasEnded = false;
};

} // namespace tarnvale
