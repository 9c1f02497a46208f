#include "tests/support/HttpServer.h"

#include <memory>

#include <QtCore/QFile>
#include <QtCore/QTimer>
#include <QtNetwork/QSslCertificate>
#include <QtNetwork/QSslConfiguration>
#include <QtNetwork/QSslKey>
#include <QtNetwork/QSslServer>
#include <QtNetwork/QTcpServer>
#include <QtNetwork/QTcpSocket>

namespace larkspan::test {

namespace {

QByteArray content(const std::filesystem::path &path)
{
    QFile file(QString::fromStdString(path.string()));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QTcpServer *makeServer(const std::optional<HttpServer::Identity> &identity)
{
    if (!identity) {
        return new QTcpServer;
    }
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setLocalCertificate(QSslCertificate(content(identity->certificate)));
    configuration.setPrivateKey(QSslKey(content(identity->key), QSsl::Ec));
    configuration.setPeerVerifyMode(QSslSocket::VerifyNone); // of the client
    auto *server = new QSslServer;
    server->setSslConfiguration(configuration);
    return server;
}

// The request that the bytes begin with, if it is all there; takes it off them.
std::optional<HttpServer::Request> takeRequest(QByteArray &received)
{
    const qsizetype endOfHead = received.indexOf("\r\n\r\n");
    if (endOfHead < 0) {
        return std::nullopt;
    }
    QList<QByteArray> lines = received.first(endOfHead).split('\n');
    const QList<QByteArray> start = lines.takeFirst().trimmed().split(' ');
    HttpServer::Request request{.method = start.value(0), .target = start.value(1)};
    for (const QByteArray &line : lines) {
        const qsizetype colon = line.indexOf(':');
        request.headers[line.first(colon).toLower()] = line.sliced(colon + 1).trimmed();
    }
    const auto size = static_cast<qsizetype>(request.headers["content-length"].toLongLong());
    if (received.size() < endOfHead + 4 + size) {
        return std::nullopt;
    }
    request.body = received.sliced(endOfHead + 4, size);
    received.remove(0, endOfHead + 4 + size);
    return request;
}

} // namespace

HttpServer::HttpServer(Handler handler, const std::optional<Identity> &identity)
    : m_handler(std::move(handler))
    , m_speaksTls(identity)
    , m_server(makeServer(identity))
{
    if (m_server->listen(QHostAddress::LocalHost)) {
        m_port = m_server->serverPort();
    }
    QObject::connect(m_server, &QTcpServer::pendingConnectionAvailable, m_server, [this] {
        while (QTcpSocket *socket = m_server->nextPendingConnection()) {
            accept(*socket);
        }
    });
    m_server->moveToThread(&m_thread);
    QObject::connect(&m_thread, &QThread::finished, m_server, &QObject::deleteLater);
    m_thread.start();
}

HttpServer::~HttpServer()
{
    m_thread.quit();
    m_thread.wait();
}

HttpServer::Response HttpServer::respond(int status, const QByteArray &body, const QByteArray &moreHeaders)
{
    return {"HTTP/1.1 " + QByteArray::number(status) + " Reason\r\n" + moreHeaders +
            "Content-Type: application/json\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body};
}

QString HttpServer::url() const
{
    return QStringLiteral("%1://127.0.0.1:%2/v1/messages")
        .arg(m_speaksTls ? QStringLiteral("https") : QStringLiteral("http"))
        .arg(m_port);
}

std::vector<HttpServer::Request> HttpServer::requests() const
{
    const std::lock_guard lock(m_mutex);
    return m_requests;
}

void HttpServer::accept(QTcpSocket &socket)
{
    const auto received = std::make_shared<QByteArray>();
    const int connection = ++m_connections;
    QObject::connect(&socket, &QTcpSocket::readyRead, &socket,
                     [this, &socket, received, connection] { read(socket, *received, connection); });
    QObject::connect(&socket, &QTcpSocket::disconnected, &socket, &QObject::deleteLater);
    read(socket, *received, connection);
}

void HttpServer::read(QTcpSocket &socket, QByteArray &received, int connection)
{
    received += socket.readAll();
    while (auto request = takeRequest(received)) {
        request->connection = connection;
        {
            const std::lock_guard lock(m_mutex);
            m_requests.push_back(*request);
        }
        const Response response = m_handler(*request);
        const auto answer = [&socket, response] {
            socket.write(response.bytes);
            if (response.closes) {
                socket.disconnectFromHost(); // once all is written
            }
        };
        QTimer::singleShot(response.delay, &socket, answer);
    }
}

} // namespace larkspan::test
