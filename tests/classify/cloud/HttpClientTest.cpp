#include "classify/cloud/HttpClient.h"

#include <thread>

#include <gmock/gmock.h>

#include "tests/support/HttpServer.h"
#include "tests/support/WaitUntil.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::AllOf;
using testing::Each;
using testing::SizeIs;

namespace {

HttpServer::Handler always(const HttpServer::Response &response)
{
    return [response](const HttpServer::Request &) { return response; };
}

QNetworkRequest requestTo(const HttpServer &server)
{
    QNetworkRequest request(QUrl(server.url()));
    request.setRawHeader("Content-Type", "application/json");
    return request;
}

} // namespace

TEST(HttpClient, HandsBackStatusAndBody)
{
    const HttpServer server(always(HttpServer::respond(418, "teapot")));
    const auto answer = HttpClient().post(requestTo(server), "tea");
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->status, 418);
    EXPECT_EQ(answer->body, "teapot");
    EXPECT_TRUE(answer->isWhole);
    ASSERT_THAT(server.requests(), SizeIs(1));
    EXPECT_EQ(server.requests()[0].body, "tea");
}

TEST(HttpClient, KeepsAConnectionOpenForRequestsOfAnyThread)
{
    const HttpServer server(always(HttpServer::respond(200, "{}")));
    const HttpClient client;
    for (int i = 0; i < 5; ++i) {
        std::jthread([&] { EXPECT_TRUE(client.post(requestTo(server), "x")); });
    }
    EXPECT_THAT(server.requests(), AllOf(SizeIs(5), Each(testing::Field(&HttpServer::Request::connection, 1))));
    EXPECT_EQ(server.connections(), 1);
}

TEST(HttpClient, OpensNoMoreConnectionsThanRequestsAreInFlight)
{
    auto slow = HttpServer::respond(200, "{}");
    slow.delay = std::chrono::milliseconds(20);
    const HttpServer server(always(slow));
    const HttpClient client;
    {
        std::vector<std::jthread> threads;
        for (int thread = 0; thread < 6; ++thread) {
            threads.emplace_back([&] {
                for (int i = 0; i < 5; ++i) {
                    EXPECT_TRUE(client.post(requestTo(server), "x"));
                }
            });
        }
    }
    EXPECT_THAT(server.requests(), SizeIs(30));
    EXPECT_LE(server.connections(), 6);
}

TEST(HttpClient, AConnectionThatTheServerClosedBetweenRequestsIsOpenedAnew)
{
    auto closing = HttpServer::respond(200, "{}");
    closing.closes = true;
    const HttpServer server(always(closing));
    const HttpClient client;
    for (int i = 0; i < 5; ++i) {
        EXPECT_TRUE(client.post(requestTo(server), "x"));
    }
    EXPECT_THAT(server.requests(), SizeIs(5));
}

TEST(HttpClient, ARequestThatWasReadAndNotAnsweredIsNotSentAgain)
{
    const HttpServer server(always({.closes = true}));
    EXPECT_FALSE(HttpClient().post(requestTo(server), "x"));
    EXPECT_THAT(server.requests(), SizeIs(1)) << "each costs the editor money";
}

TEST(HttpClient, ARequestThatMetTheEndOfAKeptConnectionIsSentOnceMoreOverAFreshOne)
{
    int number = 0; // on the server's thread
    const HttpServer server([&number](const HttpServer::Request &) {
        return ++number == 2 ? HttpServer::Response{.closes = true} : HttpServer::respond(200, "{}");
    });
    const HttpClient client;
    EXPECT_TRUE(client.post(requestTo(server), "first"));
    EXPECT_TRUE(client.post(requestTo(server), "second"));
    const auto asSeen = [](int connection, const QByteArray &body) {
        return testing::AllOf(testing::Field(&HttpServer::Request::connection, connection),
                              testing::Field(&HttpServer::Request::body, body));
    };
    EXPECT_THAT(server.requests(), testing::ElementsAre(asSeen(1, "first"), asSeen(1, "second"), asSeen(2, "second")));
}

TEST(HttpClient, ARequestIsSentOnceMoreAndNoOftener)
{
    int number = 0; // on the server's thread
    const HttpServer server([&number](const HttpServer::Request &) {
        return ++number > 1 ? HttpServer::Response{.closes = true} : HttpServer::respond(200, "{}");
    });
    const HttpClient client;
    EXPECT_TRUE(client.post(requestTo(server), "x"));
    EXPECT_FALSE(client.post(requestTo(server), "x"));
    EXPECT_THAT(server.requests(), SizeIs(3));
}

TEST(HttpClient, AStopEndsTheWait)
{
    const HttpServer server(always(HttpServer::silence()));
    const HttpClient client;
    std::stop_source stop;
    HttpClient::Answer answer;
    std::atomic<bool> ended = false;
    const std::jthread waiting([&] {
        answer = client.post(requestTo(server), "x", stop.get_token());
        ended = true;
    });
    ASSERT_TRUE(waitUntil([&] { return server.requests().size() == 1; }));
    EXPECT_FALSE(ended);
    stop.request_stop();
    ASSERT_TRUE(waitUntil([&] { return ended.load(); }, std::chrono::seconds(20))) << "well before the time-out";
    ASSERT_FALSE(answer);
    EXPECT_EQ(answer.error(), u"the request was stopped"_s);
}

TEST(HttpClient, AStopThatWasAskedForBeforehandEndsTheRequestToo)
{
    const HttpServer server(always(HttpServer::silence()));
    std::stop_source stop;
    stop.request_stop();
    EXPECT_EQ(HttpClient().post(requestTo(server), "x", stop.get_token()).error(), u"the request was stopped"_s);
}

TEST(HttpClient, KeepsNoCookies)
{
    const HttpServer server(always(HttpServer::respond(200, "{}", "Set-Cookie: a=b; Path=/\r\n")));
    const HttpClient client;
    EXPECT_TRUE(client.post(requestTo(server), "x"));
    EXPECT_TRUE(client.post(requestTo(server), "x"));
    ASSERT_THAT(server.requests(), SizeIs(2));
    EXPECT_FALSE(server.requests()[1].headers.contains("cookie"));
}

TEST(HttpClient, KnowsThisMachineByItsNamesAndNumbers)
{
    for (const auto &host : {u"localhost"_s, u"LOCALHOST"_s, u"127.0.0.1"_s, u"127.8.9.10"_s, u"::1"_s}) {
        EXPECT_TRUE(isLoopback(host)) << host.toStdString();
    }
    for (const auto &host :
         {u""_s, u"localhost.example"_s, u"0.0.0.0"_s, u"128.0.0.1"_s, u"::"_s, u"127.0.0.1.example"_s}) {
        EXPECT_FALSE(isLoopback(host)) << host.toStdString();
    }
}
