#include <gmock/gmock.h>

#include "classify/cloud/CloudClassifier.h"
#include "classify/cloud/HttpClient.h"
#include "tests/classify/cloud/CloudSamples.h"
#include "tests/core/engine/SortEngineFixture.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::AllOf;
using testing::Each;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

// Whole sorts whose clips are shown to a model on this machine.
class CloudSort : public SortEngineTest
{
protected:
    // Brought up for a server; six clips are in work at once.
    std::unique_ptr<SortEngine> engineFor(const HttpServer &server)
    {
        auto parts = seams();
        parts.makeCloudClassifier =
            [client = std::make_shared<const HttpClient>()](const CloudSettings &settings,
                                                            std::shared_ptr<const FrameClassifier> localTier) {
                return std::make_shared<CloudClassifier>(settings, std::move(localTier), client);
            };
        auto engine = std::make_unique<SortEngine>(parts, 8);
        engine->setModelTier(ModelTier::cloud);
        engine->setCloudSettings(settingsFor(server.url()));
        return engine;
    }

    void makeShoot(int clips) const
    {
        for (int i = 0; i < clips; ++i) {
            (void)folder.write("kitchen " + std::to_string(i) + ".mov");
        }
    }
};

auto filedUnder(const QString &bin)
{
    return testing::Pointee(testing::Field(&MediaClip::primaryBin, bin));
}

} // namespace

TEST_F(CloudSort, OneRequestPerClipAndNoMoreConnectionsThanClipsInWork)
{
    makeShoot(40);
    const HttpServer server(verdict(u"{\"primary\":\"Pool\"}"_s));
    const auto engine = engineFor(server);
    ASSERT_EQ(engine->width(), 6);
    engine->sortFolder(shoot);
    ASSERT_TRUE(reaches(*engine, StageKind::results));
    EXPECT_THAT(engine->clips(), AllOf(SizeIs(40), Each(filedUnder(u"Pool"_s))));
    EXPECT_THAT(server.requests(), SizeIs(40));
    EXPECT_LE(server.connections(), 6);
}

TEST_F(CloudSort, WhateverTheEndpointDoesTheSortGoesOnLocally)
{
    makeShoot(12);
    int number = 0; // on the server's thread
    const HttpServer server([&number](const HttpServer::Request &) -> HttpServer::Response {
        switch (number++ % 6) {
        case 0:
            return HttpServer::respond(500, QByteArray(5'000'000, '\xff'));
        case 1:
            return HttpServer::respond(429, "slow down");
        case 2:
            return {.bytes = "HTTP/1.1 200 OK\r\nContent-Length: 50\r\n\r\n{", .closes = true};
        case 3:
            return HttpServer::respond(200, "{\"content\":");
        case 4:
            return HttpServer::respond(307, "", "Location: http://localhost:1/\r\n");
        default:
            return HttpServer::respond(200, bodyWith(u"}{"_s));
        }
    });
    const auto engine = engineFor(server);
    engine->sortFolder(shoot);
    ASSERT_TRUE(reaches(*engine, StageKind::results));
    EXPECT_THAT(engine->clips(), AllOf(SizeIs(12), Each(filedUnder(u"Kitchen"_s))));
}

TEST_F(CloudSort, ACancelledSortWaitsForNoModelAndTheNextOneRunsAtOnce)
{
    makeShoot(12);
    std::atomic<bool> isSilent = true;
    const HttpServer server([&isSilent](const HttpServer::Request &) {
        return isSilent ? HttpServer::silence() : HttpServer::respond(200, bodyWith(u"{\"primary\":\"Pool\"}"_s));
    });
    const auto engine = engineFor(server);
    engine->sortFolder(shoot);
    ASSERT_TRUE(waitUntil([&] { return server.requests().size() == 6; }));
    isSilent = false;
    engine->sortFolder(shoot);
    ASSERT_TRUE(waitUntil([&] { return engine->stage().kind == StageKind::results; }, std::chrono::seconds(30)))
        << "held up by the requests of the sort before";
    EXPECT_THAT(engine->clips(), AllOf(SizeIs(12), Each(filedUnder(u"Pool"_s))));
    EXPECT_THAT(server.requests(), SizeIs(18)) << "what still waited for a thread was never asked";
}

TEST_F(CloudSort, TheProgramCanEndWhileAModelIsSilent)
{
    makeShoot(6);
    const HttpServer server([](const HttpServer::Request &) { return HttpServer::silence(); });
    auto engine = engineFor(server);
    engine->sortFolder(shoot);
    ASSERT_TRUE(waitUntil([&] { return server.requests().size() == 6; }));
    const QDeadlineTimer deadline(std::chrono::seconds(30));
    engine.reset();
    EXPECT_FALSE(deadline.hasExpired()) << "waited for the time-out";
}
