#include "probes/ScriptedServer.h"

namespace tarnvale {

ScriptedServer::ScriptedServer(Script script, const QHostAddress &address, std::uint16_t port)
    : m_script(std::move(script)) {
    QObject::connect(&m_server, &QTcpServer::newConnection, &m_server, [this] { accept(); });
    m_server.listen(address, port);
}

ScriptedServer::Script ScriptedServer::saying(const std::string &bytes) {
    return [bytes](QTcpSocket &client) { client.write(QByteArray::fromStdString(bytes)); };
}

void ScriptedServer::greetWith(Script script) {
    m_greeting = std::move(script);
}

void ScriptedServer::accept() {
    while (QTcpSocket *client = m_server.nextPendingConnection()) {
        ++connections;
        QObject::connect(client, &QTcpSocket::readyRead, &m_server, [this, client] { read(*client); });
        QObject::connect(client, &QTcpSocket::disconnected, &m_server, [this] { ++closed; });
        if (m_greeting)
            m_greeting(*client);
    }
}

void ScriptedServer::read(QTcpSocket &client) {
    request += client.readAll().toStdString();
    if (request.ends_with("\r\n\r\n") && m_script)
        m_script(client);
}

} // namespace tarnvale
