#include "updates/HttpsServer.h"

#include "discovery/findTool.h"
#include "support/TemporaryFolder.h"
#include "support/runProgram.h"

#include <QHostAddress>
#include <QSslCertificate>
#include <QSslKey>

#include <memory>

namespace tarnvale {

namespace {

struct Certificate {
    QSslCertificate certificate;
    QSslKey key;
};

Certificate makeCertificate() {
    const auto tool = findInPath("openssl");
    if (!tool)
        return Certificate();
    const TemporaryFolder folder;
    const ProgramRun run = runProgram({*tool, "req", "-x509", "-newkey", "ec", "-pkeyopt",
                                       "ec_paramgen_curve:prime256v1", "-nodes", "-days", "2", "-subj",
                                       "/CN=localhost", "-addext", "subjectAltName=DNS:localhost", "-keyout",
                                       folder.path("key.pem"), "-out", folder.path("certificate.pem")});
    if (run.status != 0)
        return Certificate();
    return {QSslCertificate(QByteArray::fromStdString(readFile(folder.path("certificate.pem")))),
            QSslKey(QByteArray::fromStdString(readFile(folder.path("key.pem"))), QSsl::Ec)};
}

const Certificate &certificate() {
    static const Certificate made = makeCertificate();
    return made;
}

std::string headFor(std::size_t length) {
    return "HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(length) + "\r\nConnection: close\r\n\r\n";
}

} // namespace

std::optional<std::string> HttpsServer::obstacle() {
    if (!QSslSocket::supportsSsl())
        return "Qt has no TLS here";
    if (certificate().certificate.isNull() || certificate().key.isNull())
        return "openssl can't make a certificate here";
    return std::nullopt;
}

HttpsServer::HttpsServer() {
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setLocalCertificate(certificate().certificate);
    configuration.setPrivateKey(certificate().key);
    m_server.setSslConfiguration(configuration);
    QObject::connect(&m_server, &QSslServer::pendingConnectionAvailable, &m_server, [this] { accept(); });
    m_server.listen(QHostAddress::LocalHost);
}

std::string HttpsServer::address(const std::string &path) const {
    return "https://localhost:" + std::to_string(m_server.serverPort()) + path;
}

QSslConfiguration HttpsServer::trusting() const {
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setCaCertificates({certificate().certificate});
    return configuration;
}

void HttpsServer::accept() {
    while (auto *client = qobject_cast<QSslSocket *>(m_server.nextPendingConnection())) {
        QObject::connect(client, &QSslSocket::disconnected, client, &QObject::deleteLater);
        QObject::connect(client, &QSslSocket::readyRead, client, [this, client] { read(*client); });
        read(*client);
    }
}

void HttpsServer::read(QSslSocket &client) {
    const QByteArray request = client.peek(64 << 10);
    if (!request.contains("\r\n\r\n"))
        return;
    client.readAll();
    lastRequest = request.toStdString();
    const std::string path = request.split(' ').value(1).toStdString();
    asked.push_back(path);
    const auto script = m_scripts.find(path);
    if (script != m_scripts.end())
        script->second(client);
    else
        saying("HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\nConnection: close\r\n\r\n")(client);
}

HttpsServer::Script HttpsServer::file(const std::string &content) {
    return saying(headFor(content.size()) + content);
}

HttpsServer::Script HttpsServer::saying(const std::string &bytes) {
    return [bytes](QSslSocket &client) {
        client.write(QByteArray::fromStdString(bytes));
        client.disconnectFromHost();
    };
}

HttpsServer::Script HttpsServer::endless(const std::string &head, std::int64_t &sent) {
    return [head, &sent](QSslSocket &client) {
        const auto more = [&sent, socket = &client] {
            const QByteArray piece(64 << 10, 'x');
            if (socket->encryptedBytesToWrite() + socket->bytesToWrite() < piece.size())
                sent += socket->write(piece);
        };
        QObject::connect(&client, &QSslSocket::encryptedBytesWritten, &client, more);
        client.write(QByteArray::fromStdString(head));
        more();
    };
}

HttpsServer::Script HttpsServer::silent() {
    return [](QSslSocket &) {};
}

HttpsServer::Script HttpsServer::redirecting(const std::string &address) {
    return saying("HTTP/1.1 302 Found\r\nLocation: " + address +
                  "\r\nContent-Length: 5\r\nConnection: close\r\n\r\nmoved");
}

} // namespace tarnvale
