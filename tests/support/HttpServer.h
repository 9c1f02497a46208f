#pragma once

#include <atomic>
#include <chrono>
#include <filesystem>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <vector>

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QThread>

class QTcpServer;
class QTcpSocket;

namespace larkspan::test {

// A web server on this machine's loopback that answers as its test says, byte for byte if need be. It has a thread of
// its own, so that a test may wait for it. Connections are kept open unless a response says otherwise.
class HttpServer
{
public:
    struct Request
    {
        QByteArray method;
        QByteArray target;
        std::map<QByteArray, QByteArray> headers; // names in lower case
        QByteArray body;
        int connection = 0; // which of the connections brought it, from 1 up
    };
    struct Response
    {
        QByteArray bytes; // of the whole answer, status line first
        std::chrono::milliseconds delay{0};
        bool closes = false; // the connection, after the bytes
    };
    // PEM files.
    struct Identity
    {
        std::filesystem::path certificate;
        std::filesystem::path key;
    };
    using Handler = std::function<Response(const Request &request)>; // called on the server's thread

    // With an identity it speaks TLS alone.
    explicit HttpServer(Handler handler, const std::optional<Identity> &identity = std::nullopt);
    ~HttpServer();
    HttpServer(const HttpServer &) = delete;
    HttpServer &operator=(const HttpServer &) = delete;

    [[nodiscard]] static Response respond(int status, const QByteArray &body, const QByteArray &moreHeaders = {});
    // Never says anything.
    [[nodiscard]] static Response silence() { return {}; }

    // Its address by number, with the path "/v1/messages".
    [[nodiscard]] QString url() const;
    [[nodiscard]] int port() const { return m_port; }
    [[nodiscard]] std::vector<Request> requests() const;
    [[nodiscard]] int connections() const { return m_connections; }

private:
    void accept(QTcpSocket &socket);
    void read(QTcpSocket &socket, QByteArray &received, int connection);

    const Handler m_handler;
    const bool m_speaksTls;
    int m_port = 0;
    std::atomic<int> m_connections = 0;
    mutable std::mutex m_mutex; // of what follows
    std::vector<Request> m_requests;
    QThread m_thread;
    QTcpServer *m_server; // lives on the thread, and goes with it
};

} // namespace larkspan::test
