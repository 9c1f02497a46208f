#include "classify/cloud/CloudRequest.h"

#include <future>
#include <thread>

#include <gmock/gmock.h>
#include <QtNetwork/QTcpServer>
#include <QtNetwork/QTcpSocket>

#include "classify/cloud/HttpClient.h"
#include "core/bins/RoomLabel.h"
#include "tests/classify/cloud/CloudSamples.h"
#include "tests/support/TempFolder.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::Pair;
using testing::SizeIs;

namespace {

const CloudVerdict pool{u"Pool"_s};
const Verdict badEndpoint = tl::unexpected(CloudError{.kind = CloudError::Kind::badEndpoint});

Verdict refused(int status, const QString &text)
{
    return tl::unexpected(CloudError{.kind = CloudError::Kind::http, .status = status, .text = text});
}

bool failsInThePlatformsWords(const Verdict &verdict)
{
    return !verdict && verdict.error().kind == CloudError::Kind::platform && !verdict.error().text.isEmpty();
}

// Returns the verdict on this answer to a request.
Verdict verdictOn(const HttpServer::Response &response, const HttpClient &client = HttpClient())
{
    const HttpServer server([&](const HttpServer::Request &) { return response; });
    return requestVerdict({"aGk="}, settingsFor(server.url()), client);
}

Verdict verdictOn(int status, const QByteArray &body)
{
    return verdictOn(HttpServer::respond(status, body));
}

Verdict verdictFrom(const QString &endpoint)
{
    return requestVerdict({"aGk="}, settingsFor(endpoint), HttpClient());
}

const QByteArray poolBody = bodyWith(u"{\"primary\":\"Pool\"}"_s);

} // namespace

TEST(BuildPrompt, ListsEveryBinInTheTablesOrder)
{
    EXPECT_EQ(
        buildPrompt(),
        uR"(These frames come from one clip of a real estate video shoot. Choose which bin it belongs in, from exactly this list:

- Kitchen
- Bathroom
- Bedroom
- Living Room
- Dining Room
- Office
- Laundry Room
- Garage
- Hallway / Stairs
- Closet
- Exterior Front
- Entry / Courtyard
- Exterior Back
- Pool
- Aerial / Drone
- Agent / Talent
- Exterior Detail
- Interior Detail
- Amenities / Other

Rules:
- "Agent / Talent" if a person is a subject of the shot, even a small figure in the distance.
- Use a secondary bin ONLY when a second room is genuinely prominent (for example a dining table in front with the kitchen clearly behind).
- A shot framed through a doorway belongs to the room it reveals, not the hallway.
- Close-ups of plants, fixtures or styling are Detail shots.

Reply with JSON only, no prose:
{"primary":"<bin>","secondary":[],"person_visible":false,"note":"<3 words>"})"_s);
}

TEST(RequestVerdict, SendsOneRequestInTheFormatOfTheApi)
{
    const HttpServer server(verdict(u"{\"primary\":\"Pool\"}"_s));
    EXPECT_EQ(requestVerdict({"Zmlyc3Q=", "c2Vjb25k"}, settingsFor(server.url()), HttpClient()), pool);
    ASSERT_THAT(server.requests(), SizeIs(1));
    const HttpServer::Request request = server.requests().front();
    EXPECT_EQ(request.method, "POST");
    EXPECT_EQ(request.target, "/v1/messages");
    EXPECT_THAT(request.headers, AllOf(Contains(Pair("content-type", "application/json")),
                                       Contains(Pair("x-api-key", secretKey.toUtf8())),
                                       Contains(Pair("anthropic-version", "2023-06-01"))));
    const auto image = [](const QString &data) {
        return QJsonObject{
            {u"type"_s, u"image"_s},
            {u"source"_s,
             QJsonObject{{u"type"_s, u"base64"_s}, {u"media_type"_s, u"image/jpeg"_s}, {u"data"_s, data}}}};
    };
    const QJsonArray content{image(u"Zmlyc3Q="_s), image(u"c2Vjb25k"_s),
                             QJsonObject{{u"type"_s, u"text"_s}, {u"text"_s, buildPrompt()}}};
    const QJsonObject expected{
        {u"model"_s, u"model-of-the-test"_s},
        {u"max_tokens"_s, 200},
        {u"messages"_s, QJsonArray{QJsonObject{{u"role"_s, u"user"_s}, {u"content"_s, content}}}}};
    EXPECT_EQ(QJsonDocument::fromJson(request.body).object(), expected);
}

TEST(RequestVerdict, AnythingThatIsNoUrlOfAServiceIsABadEndpoint)
{
    for (const auto &endpoint :
         {u""_s, u"not a url"_s, u"http//missing.colon"_s, u"https://"_s, u"https:///v1/messages"_s,
          u"https://host:port/"_s, u"https://[::1/"_s, u"/v1/messages"_s, u"gopher://localhost/"_s,
          u"ftp://localhost/"_s, u"javascript:1"_s, u"file:///dev/zero"_s, u"file:///no/such/file"_s}) {
        EXPECT_EQ(verdictFrom(endpoint), badEndpoint) << endpoint.toStdString();
    }
}

TEST(RequestVerdict, PlainHttpGoesToThisMachineAlone)
{
    for (const auto &endpoint : {u"http://192.0.2.1/"_s, u"http://example.invalid/"_s, u"http://localhost.example/"_s,
                                 u"http://127.0.0.1.example/"_s, u"http://0.0.0.0/"_s, u"http://[2001:db8::1]/"_s,
                                 u"http://localhost@192.0.2.1/"_s, u"HTTP://192.0.2.1/"_s}) {
        EXPECT_EQ(verdictFrom(endpoint), badEndpoint) << endpoint.toStdString();
    }
    const HttpServer server(verdict(u"{\"primary\":\"Pool\"}"_s));
    EXPECT_EQ(verdictFrom(u"http://localhost:%1/"_s.arg(server.port())), pool);
    EXPECT_EQ(verdictFrom(u"HTTP://127.0.0.1:%1/"_s.arg(server.port())), pool);
}

TEST(RequestVerdict, AProxyIsNeverToldWhatIsMeantForThisMachine)
{
    const HttpServer proxy(verdict(u"{\"primary\":\"Garage\"}"_s));
    const HttpServer server(verdict(u"{\"primary\":\"Pool\"}"_s));
    qputenv("http_proxy", proxy.url().toUtf8());
    const Verdict verdict = verdictFrom(server.url());
    qunsetenv("http_proxy");
    EXPECT_EQ(verdict, pool);
    EXPECT_EQ(proxy.connections(), 0);
}

TEST(RequestVerdict, AProxyIsAskedForATunnelToOthersAndLearnsNoKey)
{
    const HttpServer proxy([](const HttpServer::Request &) { return HttpServer::respond(403, "no"); });
    qputenv("https_proxy", proxy.url().toUtf8());
    const Verdict verdict = verdictFrom(u"https://model.example.invalid/v1/messages"_s);
    qunsetenv("https_proxy");
    EXPECT_TRUE(failsInThePlatformsWords(verdict));
    ASSERT_THAT(proxy.requests(), SizeIs(1));
    EXPECT_EQ(proxy.requests()[0].method, "CONNECT");
    EXPECT_EQ(proxy.requests()[0].target, "model.example.invalid:443");
    EXPECT_FALSE(proxy.requests()[0].headers.contains("x-api-key"));
}

TEST(RequestVerdict, AResponseFromANonHttpSchemeSkipsTheStatusCheck)
{
    EXPECT_EQ(verdictFrom(u"data:application/json,"_s + QString::fromUtf8(poolBody.toPercentEncoding())), pool);
    const TempFolder folder;
    const auto file = folder.write("reply.json", poolBody.toStdString());
    EXPECT_EQ(verdictFrom(u"file://"_s + QString::fromStdString(file.string())), pool);
}

TEST(RequestVerdict, ARefusedConnectionFailsInThePlatformsWords)
{
    QTcpServer closed;
    ASSERT_TRUE(closed.listen(QHostAddress::LocalHost));
    const QString endpoint = u"http://127.0.0.1:%1/"_s.arg(closed.serverPort());
    closed.close();
    EXPECT_TRUE(failsInThePlatformsWords(verdictFrom(endpoint)));
}

TEST(RequestVerdict, ASilentEndpointTimesOut)
{
    const HttpClient impatient(HttpClient::Limits{.time = std::chrono::milliseconds(200)});
    const Verdict verdict = verdictOn(HttpServer::silence(), impatient);
    ASSERT_FALSE(verdict);
    EXPECT_EQ(verdict.error(), (CloudError{.kind = CloudError::Kind::platform, .text = u"the request timed out"_s}));
}

TEST(RequestVerdict, AnEndpointThatDripsItsReplyTimesOutAllTheSame)
{
    // Each byte within the time, all of them never.
    const HttpClient impatient(HttpClient::Limits{.time = std::chrono::milliseconds(300)});
    std::promise<int> port;
    const std::jthread dripping([&port](const std::stop_token &stop) {
        QTcpServer server;
        server.listen(QHostAddress::LocalHost);
        port.set_value(server.serverPort());
        server.waitForNewConnection(60'000);
        const std::unique_ptr<QTcpSocket> socket(server.nextPendingConnection());
        socket->write("HTTP/1.1 200 OK\r\nContent-Length: 100000\r\n\r\n");
        while (!stop.stop_requested() && socket->state() == QAbstractSocket::ConnectedState) {
            socket->write(" ");
            socket->waitForBytesWritten(50);
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
    });
    const QString endpoint = u"http://127.0.0.1:%1/"_s.arg(port.get_future().get());
    const Verdict verdict = requestVerdict({"aGk="}, settingsFor(endpoint), impatient);
    ASSERT_FALSE(verdict);
    EXPECT_EQ(verdict.error().text, u"the request timed out"_s);
}

TEST(RequestVerdict, AnEndpointThatClosesMidBodyFailsInThePlatformsWords)
{
    const QByteArray half = "HTTP/1.1 200 OK\r\nContent-Length: 5000\r\n\r\n" + poolBody;
    EXPECT_TRUE(failsInThePlatformsWords(verdictOn({.bytes = half, .closes = true})));
    const QByteArray chunk = "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n1000\r\n" + poolBody.chopped(5);
    EXPECT_TRUE(failsInThePlatformsWords(verdictOn({.bytes = chunk, .closes = true})));
}

TEST(RequestVerdict, AnEndpointThatClosesWithoutAWordOrTalksNonsenseFailsInThePlatformsWords)
{
    EXPECT_TRUE(failsInThePlatformsWords(verdictOn({.closes = true})));
    EXPECT_TRUE(failsInThePlatformsWords(verdictOn({.bytes = "SSH-2.0-OpenSSH\r\n\r\n", .closes = true})));
    EXPECT_TRUE(failsInThePlatformsWords(verdictOn({.bytes = "HTTP/1.1 ", .closes = true})));
}

TEST(RequestVerdict, ARedirectIsNotFollowed)
{
    const HttpServer elsewhere(verdict(u"{\"primary\":\"Garage\"}"_s));
    for (const int status : {301, 302, 303, 307, 308}) {
        const QByteArray location = "Location: " + elsewhere.url().toUtf8() + "\r\n";
        EXPECT_EQ(verdictOn(HttpServer::respond(status, "moved", location)), refused(status, u"moved"_s));
    }
    EXPECT_EQ(elsewhere.connections(), 0);
}

TEST(RequestVerdict, ARefusalKeepsItsStatusAndTheStartOfItsBody)
{
    EXPECT_EQ(verdictOn(401, "{\"error\":\"invalid key\"}"), refused(401, u"{\"error\":\"invalid key\"}"_s));
    EXPECT_EQ(verdictOn(429, ""), refused(429, u""_s));
    EXPECT_EQ(verdictOn(500, QByteArray("ä€").repeated(100)), refused(500, QString(u"ä€"_s).repeated(70)));
    const QString family = u"👨‍👩‍👧"_s; // one character to people
    EXPECT_EQ(verdictOn(529, family.repeated(150).toUtf8()), refused(529, family.repeated(140)));
}

TEST(RequestVerdict, AQuestionForAPasswordIsARefusalLikeAnyOther)
{
    EXPECT_EQ(verdictOn(HttpServer::respond(401, "who?", "WWW-Authenticate: Basic realm=\"x\"\r\n")),
              refused(401, u"who?"_s));
}

TEST(RequestVerdict, A500WithABinaryBodyHasAnEmptyRest)
{
    const Verdict verdict = verdictOn(500, QByteArray("oh \xff\xfe\x00 no", 9));
    EXPECT_EQ(verdict, refused(500, u""_s));
    EXPECT_EQ(verdict.error().errorDescription(), u"server said 500 — "_s);
}

TEST(RequestVerdict, ABodyOfTenMegabytesIsCutAndNotSwallowed)
{
    EXPECT_EQ(verdictOn(500, QByteArray(10'000'000, 'x')), refused(500, QString(140, u'x')));
    // The cut goes through a character, which makes the body no less a text.
    EXPECT_EQ(verdictOn(500, QByteArray("€").repeated(3'000'000)), refused(500, QString(140, u'€')));
    EXPECT_EQ(verdictOn(500, QByteArray(10'000'000, '\xff')), refused(500, u""_s));
    EXPECT_EQ(verdictOn(200, QByteArray(10'000'000, ' ') + poolBody), unreadable);
}

TEST(RequestVerdict, ASuccessOfAnyKindIsRead)
{
    EXPECT_EQ(verdictOn(200, poolBody), pool);
    EXPECT_EQ(verdictOn(201, poolBody), pool);
    EXPECT_EQ(verdictOn(299, poolBody), pool);
}

TEST(RequestVerdict, AReplyThatIsTruncatedOrEmptyFailsInTheParsersWords)
{
    EXPECT_TRUE(failsInThePlatformsWords(verdictOn(200, poolBody.chopped(3))));
    EXPECT_TRUE(failsInThePlatformsWords(verdictOn(200, "")));
    EXPECT_TRUE(failsInThePlatformsWords(verdictOn(204, "")));
    EXPECT_TRUE(failsInThePlatformsWords(verdictOn(200, QByteArray(500'000, '['))));
}

TEST(RequestVerdict, AReplyOfAnotherShapeIsUnreadable)
{
    EXPECT_EQ(verdictOn(200, "{}"), unreadable);
    EXPECT_EQ(verdictOn(200, bodyWith(u"I'd rather not."_s)), unreadable);
    EXPECT_EQ(verdictOn(200, bodyWith(u"}{"_s)), unreadable);
}

TEST(RequestVerdict, AServerThatSaysTheKeyBackDoesNotPutItInTheError)
{
    EXPECT_EQ(verdictOn(401, "no such key: " + secretKey.toUtf8()), refused(401, u"no such key: [key]"_s));
    // Half of it, at the cut, would be as bad.
    const Verdict atTheCut = verdictOn(401, QByteArray(130, '.') + secretKey.toUtf8());
    EXPECT_EQ(atTheCut, refused(401, QString(130, u'.') + u"[key]"_s));
    const Verdict reason = verdictOn({"HTTP/1.1 401 " + secretKey.toUtf8() + "\r\nContent-Length: 0\r\n\r\n"});
    EXPECT_EQ(reason, refused(401, u""_s));
}

TEST(RequestVerdict, AKeyThatWouldBreakOutOfItsHeaderIsNotSent)
{
    const HttpServer server(verdict(u"{\"primary\":\"Pool\"}"_s));
    auto settings = settingsFor(server.url());
    settings.apiKey = u"key\r\nHost: elsewhere"_s;
    const Verdict verdict = requestVerdict({"aGk="}, settings, HttpClient());
    EXPECT_TRUE(failsInThePlatformsWords(verdict));
    EXPECT_FALSE(verdict.error().text.contains(u"elsewhere"_s));
    EXPECT_EQ(server.connections(), 0);
}

TEST(CloudError, DescribesItselfInTheProgramsWords)
{
    using Kind = CloudError::Kind;
    EXPECT_EQ((CloudError{.kind = Kind::http, .status = 401, .text = u"who?"_s}.errorDescription()),
              u"server said 401 — who?"_s);
    EXPECT_EQ(CloudError{.kind = Kind::badEndpoint}.errorDescription(), u"that endpoint URL isn't valid"_s);
    EXPECT_EQ(CloudError{.kind = Kind::unreadableResponse}.errorDescription(), u"couldn't read the model's reply"_s);
    EXPECT_EQ((CloudError{.kind = Kind::platform, .text = u"no route"_s}.errorDescription()), u"no route"_s);
}
