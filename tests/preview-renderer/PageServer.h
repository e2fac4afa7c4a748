#pragma once

#include <QByteArray>
#include <QHostAddress>
#include <QSslServer>
#include <QTcpServer>
#include <QTcpSocket>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace tarnvale {

/// A web server of the test's own on a loopback address, in the test's own event loop.
class PageServer {
public:
    explicit PageServer(const QHostAddress &address = QHostAddress::LocalHost,
                        std::unique_ptr<QTcpServer> server = std::make_unique<QTcpServer>());

    PageServer(const PageServer &) = delete;
    PageServer &operator=(const PageServer &) = delete;

    /// Whole replies by path; of a path that isn't here there is none, ever.
    std::map<std::string, QByteArray> replies;
    /// The paths that were asked for, in order.
    std::vector<std::string> asked;
    int connections = 0;

    void setPage(const std::string &path, const QByteArray &html);
    void setRedirect(const std::string &path, const std::string &url);

    [[nodiscard]] std::uint16_t port() const { return m_server->serverPort(); }
    /// "http://HOST:PORT/PATH".
    [[nodiscard]] std::string url(const std::string &host, const std::string &path = "/") const;

private:
    void accept();
    void read(QTcpSocket &client);

    std::map<QTcpSocket *, QByteArray> m_requests; ///< what has come of each
    std::unique_ptr<QTcpServer> m_server;
};

} // namespace tarnvale
