#pragma once

#include <chrono>
#include <optional>
#include <stop_token>

#include <QtCore/QByteArray>
#include <QtCore/QThread>
#include <QtNetwork/QNetworkAccessManager>
#include <QtNetwork/QNetworkRequest>
#include <QtNetwork/QSslConfiguration>
#include <tl/expected.hpp>

namespace larkspan {

// Sends requests from threads that have no event loop; each call waits for its answer. All of them share one thread
// with one manager, so that a connection once opened serves the next request, whichever thread that comes from.
// Follows no redirect, keeps no cookies, answers no question for a password. Any thread, several at once.
class HttpClient
{
public:
    struct Limits
    {
        std::chrono::milliseconds time{45'000}; // from the call to the last byte
        qint64 bytes = 1 << 20;                 // of a reply's body
    };
    struct Reply
    {
        std::optional<int> status; // none of what isn't HTTP
        QByteArray body;
        bool isWhole = true; // false: the body is longer, and was cut at the limit
    };
    using Answer = tl::expected<Reply, QString>; // or why there is no reply, in words

    HttpClient();
    // tls: whom to trust; by default, whom the system trusts.
    explicit HttpClient(Limits limits, const QSslConfiguration &tls = QSslConfiguration::defaultConfiguration());
    // Nobody may be waiting any more.
    ~HttpClient();
    HttpClient(const HttpClient &) = delete;
    HttpClient &operator=(const HttpClient &) = delete;

    // A file or a data URL has nobody to post to: it is read. Gives up at once when a stop is asked for.
    [[nodiscard]] Answer post(const QNetworkRequest &request, const QByteArray &body,
                              const std::stop_token &stop = {}) const;

private:
    const Limits m_limits;
    const QSslConfiguration m_tls;
    QThread m_thread;
    QNetworkAccessManager *m_manager; // lives on the thread, and goes with it
};

// Returns whether a host is this very machine: nothing that is sent there can be read on a wire.
[[nodiscard]] bool isLoopback(const QString &host);

} // namespace larkspan
