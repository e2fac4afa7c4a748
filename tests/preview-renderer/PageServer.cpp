#include "preview-renderer/PageServer.h"

namespace tarnvale {

PageServer::PageServer(const QHostAddress &address, std::unique_ptr<QTcpServer> server)
    : m_server(std::move(server)) {
    QObject::connect(m_server.get(), &QTcpServer::pendingConnectionAvailable, m_server.get(),
                     [this] { accept(); });
    m_server->listen(address);
}

void PageServer::setPage(const std::string &path, const QByteArray &html) {
    replies[path] = "HTTP/1.1 200 OK\r\nContent-Type: text/html; charset=utf-8\r\nContent-Length: " +
                    QByteArray::number(html.size()) + "\r\nConnection: close\r\n\r\n" + html;
}

void PageServer::setRedirect(const std::string &path, const std::string &url) {
    replies[path] = "HTTP/1.1 302 Found\r\nLocation: " + QByteArray::fromStdString(url) +
                    "\r\nContent-Length: 0\r\nConnection: close\r\n\r\n";
}

std::string PageServer::url(const std::string &host, const std::string &path) const {
    return "http://" + host + ":" + std::to_string(port()) + path;
}

void PageServer::accept() {
    while (QTcpSocket *client = m_server->nextPendingConnection()) {
        ++connections;
        QObject::connect(client, &QTcpSocket::readyRead, m_server.get(), [this, client] { read(*client); });
        QObject::connect(client, &QTcpSocket::disconnected, m_server.get(), [this, client] {
            m_requests.erase(client);
            client->deleteLater();
        });
    }
}

void PageServer::read(QTcpSocket &client) {
    QByteArray &request = m_requests[&client];
    request += client.readAll();
    if (!request.contains("\r\n\r\n"))
        return;
    const std::string path = request.split(' ').value(1).toStdString();
    if (request.contains("Mozilla/")) // no health check of a program that looks at this computer meanwhile
        asked.push_back(path);
    request.clear();
    if (const auto reply = replies.find(path); reply != replies.end()) {
        client.write(reply->second);
        client.disconnectFromHost();
    }
}

} // namespace tarnvale
