#include "classify/cloud/HttpClient.h"

#include <algorithm>
#include <future>
#include <memory>

#include <QtCore/QPointer>
#include <QtCore/QTimer>
#include <QtNetwork/QHostAddress>
#include <QtNetwork/QNetworkProxyFactory>
#include <QtNetwork/QNetworkReply>

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

// The system's proxies, but never for this machine itself: what is meant for it must not leave it.
class ProxiesForOthers : public QNetworkProxyFactory
{
public:
    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery &query) override
    {
        if (isLoopback(query.peerHostName())) {
            return {QNetworkProxy::NoProxy};
        }
        return systemProxyForQuery(query);
    }
};

// A body that is sent once over a fresh connection. Qt would send it anew whenever the server closes without an answer;
// but what was sent may have been worked on, and paid for. Over a connection that was kept open it most likely met the
// server's closing it for being idle, and gets its chance on a fresh one.
class Upload : public QIODevice
{
public:
    explicit Upload(QByteArray bytes) : m_bytes(std::move(bytes)) { open(QIODevice::ReadOnly | QIODevice::Unbuffered); }

    qint64 size() const override { return m_bytes.size(); }
    void noteFreshConnection() { m_isOnFreshConnection = true; }

    bool seek(qint64 position) override
    {
        if (position != 0 || (m_taken > 0 && m_isOnFreshConnection) || !QIODevice::seek(0)) {
            return false;
        }
        m_taken = 0;
        return true;
    }

protected:
    qint64 readData(char *data, qint64 most) override
    {
        const auto taken = std::min<qint64>(most, m_bytes.size() - m_taken);
        std::copy_n(m_bytes.constData() + m_taken, taken, data);
        m_taken += taken;
        return taken == 0 && most > 0 ? -1 : taken;
    }
    qint64 writeData(const char * /*data*/, qint64 /*most*/) override { return -1; }

private:
    const QByteArray m_bytes;
    qint64 m_taken = 0;
    bool m_isOnFreshConnection = false;
};

// Qt counts a status of refusal as an error, though the reply is all there.
bool cameThrough(QNetworkReply::NetworkError error, std::optional<int> status)
{
    const bool isOfTheStatus = error >= QNetworkReply::ContentAccessDenied && error != QNetworkReply::ProtocolFailure;
    return error == QNetworkReply::NoError || (status && *status >= 300 && isOfTheStatus);
}

// One request on its way. Lives on the network's thread, and deletes itself once it has answered.
class Exchange : public QObject
{
public:
    enum class GivenUp { no, stopped, timedOut, tooLong };

    Exchange(QNetworkReply *reply, HttpClient::Limits limits, std::shared_ptr<std::promise<HttpClient::Answer>> promise)
        : m_reply(reply)
        , m_limits(limits)
        , m_promise(std::move(promise))
    {
        reply->setParent(this);
        connect(reply, &QIODevice::readyRead, this, [this] { read(); });
        connect(reply, &QNetworkReply::finished, this, [this] { finish(); });
        QTimer::singleShot(limits.time, this, [this] { giveUp(GivenUp::timedOut); });
    }

    // Ends the request as it stands; its reply, which goes with this, drops the connection.
    void giveUp(GivenUp why)
    {
        m_givenUp = why;
        settle();
    }

private:
    void read()
    {
        m_body += m_reply->read(m_limits.bytes + 1 - m_body.size());
        if (m_body.size() > m_limits.bytes) {
            giveUp(GivenUp::tooLong);
        }
    }

    void finish()
    {
        read();
        settle();
    }

    void settle()
    {
        if (m_promise) {
            m_promise->set_value(answer());
            m_promise.reset();
            m_reply->disconnect(this);
            deleteLater();
        }
    }

    HttpClient::Answer answer() const
    {
        if (m_givenUp == GivenUp::stopped) {
            return tl::unexpected(u"the request was stopped"_s);
        }
        if (m_givenUp == GivenUp::timedOut) {
            return tl::unexpected(u"the request timed out"_s);
        }
        const QVariant code = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute);
        const auto status = code.isValid() ? std::optional(code.toInt()) : std::nullopt;
        const bool isWhole = m_body.size() <= m_limits.bytes;
        if (isWhole && !cameThrough(m_reply->error(), status)) {
            return tl::unexpected(m_reply->errorString());
        }
        return HttpClient::Reply{.status = status, .body = m_body.left(m_limits.bytes), .isWhole = isWhole};
    }

    QNetworkReply *m_reply;
    HttpClient::Limits m_limits;
    std::shared_ptr<std::promise<HttpClient::Answer>> m_promise;
    QByteArray m_body;
    GivenUp m_givenUp = GivenUp::no;
};

QNetworkRequest hardened(QNetworkRequest request, const QSslConfiguration &tls)
{
    request.setSslConfiguration(tls);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    request.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    // One connection per request in flight is all that is wanted, and the plainest that works everywhere.
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    return request;
}

} // namespace

HttpClient::HttpClient() : HttpClient(Limits()) {}

HttpClient::HttpClient(Limits limits, const QSslConfiguration &tls)
    : m_limits(limits)
    , m_tls(tls)
    , m_manager(new QNetworkAccessManager)
{
    m_manager->setProxyFactory(new ProxiesForOthers); // owned by the manager
    m_manager->moveToThread(&m_thread);
    QObject::connect(&m_thread, &QThread::finished, m_manager, &QObject::deleteLater);
    m_thread.setObjectName(u"network"_s);
    m_thread.start();
}

HttpClient::~HttpClient()
{
    m_thread.quit();
    m_thread.wait();
}

HttpClient::Answer HttpClient::post(const QNetworkRequest &request, const QByteArray &body,
                                    const std::stop_token &stop) const
{
    const auto promise = std::make_shared<std::promise<Answer>>();
    const auto exchange = std::make_shared<QPointer<Exchange>>(); // touched on the network's thread alone
    const auto start = [manager = m_manager, hardened = hardened(request, m_tls), limits = m_limits, body, promise,
                        exchange] {
        const bool isHttp = hardened.url().scheme().startsWith(u"http"_s);
        auto *upload = new Upload(body);
        QNetworkReply *reply = isHttp ? manager->post(hardened, upload) : manager->get(hardened);
        upload->setParent(reply);
        QObject::connect(reply, &QNetworkReply::socketStartedConnecting, upload,
                         [upload] { upload->noteFreshConnection(); });
        *exchange = new Exchange(reply, limits, promise); // deletes itself, and with it what it owns
    };
    QMetaObject::invokeMethod(m_manager, start, Qt::QueuedConnection);
    const std::stop_callback giveUp(stop, [this, exchange] {
        const auto stopIt = [exchange] {
            if (*exchange) {
                (*exchange)->giveUp(Exchange::GivenUp::stopped);
            }
        };
        QMetaObject::invokeMethod(m_manager, stopIt, Qt::QueuedConnection);
    });
    return promise->get_future().get();
}

bool isLoopback(const QString &host)
{
    return host.compare(u"localhost"_s, Qt::CaseInsensitive) == 0 || QHostAddress(host).isLoopback();
}

} // namespace larkspan
