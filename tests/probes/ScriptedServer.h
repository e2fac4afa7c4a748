#pragma once

#include <QHostAddress>
#include <QTcpServer>
#include <QTcpSocket>

#include <cstdint>
#include <functional>
#include <string>

namespace tarnvale {

/// A server of the test's own on a loopback address, in the test's own event loop.
class ScriptedServer {
public:
    /// What it does with a connection, once the request has come whole or, as a greeter, at once.
    using Script = std::function<void(QTcpSocket &)>;

    explicit ScriptedServer(Script script, const QHostAddress &address = QHostAddress::LocalHost,
                            std::uint16_t port = 0);

    /// It does nothing but write this.
    [[nodiscard]] static Script saying(const std::string &bytes);

    /// `script` runs when a connection comes, not when its request has come.
    void greetWith(Script script);

    [[nodiscard]] bool isListening() const { return m_server.isListening(); }
    [[nodiscard]] std::uint16_t port() const { return m_server.serverPort(); }

    std::string request; ///< all that it was sent
    int connections = 0;
    int closed = 0; ///< connections that the other side has ended

private:
    void accept();
    void read(QTcpSocket &client);

    Script m_script;
    Script m_greeting;
    QTcpServer m_server;
};

} // namespace tarnvale
