#pragma once

#include <QByteArray>
#include <QSslConfiguration>
#include <QSslServer>
#include <QSslSocket>
#include <QString>
#include <QTcpServer>

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace tarnvale {

/// An HTTPS server on "localhost" in the test's own event loop, with a certificate that nobody else trusts.
class HttpsServer {
public:
    /// What is done with a connection whose request has come.
    using Script = std::function<void(QSslSocket &)>;

    /// Why there can be no such server; nothing when there can.
    [[nodiscard]] static std::optional<std::string> obstacle();

    HttpsServer();

    [[nodiscard]] std::string address(const std::string &path) const;
    /// The settings of a client that trusts this server.
    [[nodiscard]] QSslConfiguration trusting() const;

    void set(const std::string &path, Script script) { m_scripts[path] = std::move(script); }

    /// The bytes, as a file.
    [[nodiscard]] static Script file(const std::string &content);
    /// These bytes as the whole answer, head included.
    [[nodiscard]] static Script saying(const std::string &bytes);
    /// The head, then bytes without end; `sent` counts them.
    [[nodiscard]] static Script endless(const std::string &head, std::int64_t &sent);
    /// Nothing at all, and the connection stays open.
    [[nodiscard]] static Script silent();
    [[nodiscard]] static Script redirecting(const std::string &address);

    std::vector<std::string> asked; ///< the paths of the requests
    std::string lastRequest;

private:
    void accept();
    void read(QSslSocket &client);

    QSslServer m_server;
    std::map<std::string, Script> m_scripts;
};

} // namespace tarnvale
