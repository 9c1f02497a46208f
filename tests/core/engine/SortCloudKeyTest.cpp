// The key of the cloud model, as a sort asks for it.
#include "core/base/LateValue.h"
#include "tests/core/engine/SortEngineFixture.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

TEST_F(SortEngineTest, TheCloudTierWithAnEmptyKeySortsLocally)
{
    int cloudAsked = 0;
    auto parts = seams();
    parts.makeCloudClassifier = [&](const CloudSettings &, std::shared_ptr<const FrameClassifier> local) {
        ++cloudAsked;
        return local;
    };
    makeClips({"pool 1"});
    SortEngine engine(parts);
    engine.setModelTier(ModelTier::cloud);
    engine.sortFolder(shoot);
    ASSERT_TRUE(reaches(engine, StageKind::results));
    EXPECT_EQ(cloudAsked, 0);
    engine.setCloudSettings({.apiKey = u"key"_s});
    engine.sortFolder(shoot);
    ASSERT_TRUE(reaches(engine, StageKind::results));
    EXPECT_EQ(cloudAsked, 1);
}

TEST_F(SortEngineTest, ASortUnderTheCloudTierWaitsInItsTaskForTheKeyOfAKeyringThatHasNotAnswered)
{
    makeClips({"pool 1"});
    Gate keyring;
    QString keyUsed;
    auto parts = seams();
    parts.awaitCloudKey = [&](const std::stop_token &) {
        keyring.pass();
        return u"late key"_s;
    };
    parts.makeCloudClassifier = [&](const CloudSettings &settings, std::shared_ptr<const FrameClassifier> local) {
        keyUsed = settings.apiKey;
        return local;
    };
    SortEngine engine(parts);
    engine.setModelTier(ModelTier::cloud);
    engine.sortFolder(shoot);
    keyring.awaitArrival();
    EXPECT_TRUE(waitUntil([&] { return engine.total() == 1; })) << "the main thread goes on";
    keyring.open();
    ASSERT_TRUE(reaches(engine, StageKind::results));
    EXPECT_EQ(keyUsed, u"late key"_s);
}

TEST_F(SortEngineTest, OnlyASortUnderTheCloudTierWithoutAKeyAsksTheKeyring)
{
    makeClips({"pool 1"});
    int asked = 0;
    auto parts = seams();
    parts.awaitCloudKey = [&](const std::stop_token &) {
        ++asked;
        return QString();
    };
    parts.makeCloudClassifier = [](const CloudSettings &, std::shared_ptr<const FrameClassifier> local) {
        return local;
    };
    SortEngine engine(parts);
    engine.sortFolder(shoot);
    ASSERT_TRUE(reaches(engine, StageKind::results));
    engine.setCloudSettings({.apiKey = u"key"_s});
    engine.setModelTier(ModelTier::cloud);
    engine.sortFolder(shoot);
    ASSERT_TRUE(reaches(engine, StageKind::results));
    EXPECT_EQ(asked, 0);
}

TEST_F(SortEngineTest, AResetEndsTheWaitForTheKeyring)
{
    makeClips({"pool 1"});
    LateValue<QString> key;
    std::atomic<bool> waits = false;
    auto parts = seams();
    parts.awaitCloudKey = [&](const std::stop_token &stop) {
        waits = true;
        return key.waitFor(std::chrono::hours(1), stop).value_or(QString());
    };
    SortEngine engine(parts);
    engine.setModelTier(ModelTier::cloud);
    engine.sortFolder(shoot);
    ASSERT_TRUE(waitUntil([&] { return waits.load(); }));
    engine.reset(); // or the engine's end would wait for an hour
}
