#include "updates/HttpsFetch.h"

#include "updates/httpsAddress.h"

#include <QCoreApplication>
#include <QNetworkRequest>

#include <utility>

namespace tarnvale {

namespace {

using Kind = UpdateFailure::Kind;

constexpr int allIsWell = 200;
constexpr qint64 pieceSize = 64 << 10;

QNetworkRequest requestFor(const QUrl &url, const QSslConfiguration &tls) {
    constexpr int mostRedirections = 5;
    QNetworkRequest request(url);
    request.setSslConfiguration(tls);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    request.setMaximumRedirectsAllowed(mostRedirections);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    // Asked for by hand, the answer isn't unpacked: what counts are the bytes that come.
    request.setRawHeader("Accept-Encoding", "identity");
    request.setHeader(QNetworkRequest::UserAgentHeader,
                      QStringLiteral("Tarnvale/") + QCoreApplication::applicationVersion());
    return request;
}

bool isRedirection(int status) {
    return status >= 300 && status < 400;
}

} // namespace

HttpsFetch::HttpsFetch(const QSslConfiguration &tls, Limits limits, Take take)
    : m_tls(tls), m_limits(limits), m_take(std::move(take)) {
    m_deadline.setSingleShot(true);
    connect(&m_deadline, &QTimer::timeout, this, [this] { fail(Kind::timedOut); });
}

HttpsFetch::~HttpsFetch() = default;

void HttpsFetch::start(const QUrl &url) {
    if (!isHttps(url)) {
        fail(Kind::insecure);
        return;
    }
    QNetworkRequest request = requestFor(url, m_tls);
    request.setTransferTimeout(static_cast<int>(m_limits.silence.count()));
    if (m_limits.whole.count() > 0)
        m_deadline.start(m_limits.whole);
    m_reply = m_network.get(request);
    m_reply->setReadBufferSize(4 * pieceSize); // a server isn't faster than the disk
    connect(m_reply, &QNetworkReply::metaDataChanged, this, &HttpsFetch::checkAnswer);
    connect(m_reply, &QNetworkReply::readyRead, this, &HttpsFetch::takeSome);
    connect(m_reply, &QNetworkReply::finished, this, &HttpsFetch::conclude);
}

int HttpsFetch::status() const {
    return m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
}

/// Ends a bad answer before its body comes. Qt tells of a head also where none has come.
void HttpsFetch::checkAnswer() {
    if (m_hasEnded || status() == 0 || isRedirection(status()))
        return;
    const qint64 announced = m_reply->header(QNetworkRequest::ContentLengthHeader).toLongLong();
    if (!isHttps(m_reply->url()))
        fail(Kind::insecure);
    else if (status() != allIsWell)
        fail(Kind::badAnswer);
    else if (announced > m_limits.bytes)
        fail(Kind::tooLarge);
}

void HttpsFetch::takeSome() {
    if (!m_hasEnded)
        checkAnswer();
    while (!m_hasEnded && m_reply->isOpen() && status() == allIsWell) {
        const QByteArray piece = m_reply->read(pieceSize);
        if (piece.isEmpty())
            return;
        m_received += piece.size();
        if (m_received > m_limits.bytes)
            fail(Kind::tooLarge);
        else if (const Outcome taken = m_take(piece); !taken)
            end(taken);
    }
}

void HttpsFetch::conclude() {
    takeSome();
    if (m_hasEnded)
        return;
    if (const auto error = m_reply->error(); error != QNetworkReply::NoError)
        fail(failureOf(error));
    else if (status() != allIsWell)
        fail(Kind::badAnswer);
    else
        end({});
}

UpdateFailure::Kind HttpsFetch::failureOf(QNetworkReply::NetworkError error) const {
    switch (error) {
    case QNetworkReply::OperationCanceledError: // what Qt makes of silence
    case QNetworkReply::TimeoutError:
    case QNetworkReply::ProxyTimeoutError:
        return Kind::timedOut;
    case QNetworkReply::SslHandshakeFailedError:
    case QNetworkReply::InsecureRedirectError:
        return Kind::insecure;
    case QNetworkReply::RemoteHostClosedError:
        return status() == allIsWell ? Kind::cutShort : Kind::unreachable;
    case QNetworkReply::ConnectionRefusedError:
    case QNetworkReply::HostNotFoundError:
    case QNetworkReply::TemporaryNetworkFailureError:
    case QNetworkReply::NetworkSessionFailedError:
    case QNetworkReply::UnknownNetworkError:
        return Kind::unreachable;
    default:
        return Kind::badAnswer;
    }
}

void HttpsFetch::end(const Outcome &outcome) {
    if (std::exchange(m_hasEnded, true))
        return;
    m_deadline.stop();
    if (m_reply != nullptr)
        m_reply->disconnect(this); // to abort it in its own signals confuses it
    Q_EMIT ended(outcome);
}

} // namespace tarnvale
