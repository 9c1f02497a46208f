// The offer to bring in a card, without the view that shows it.
#include "screens/copies/ImportOffer.h"

#include "tests/screens/copies/HeldCopy.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace {

class ImportOfferTest : public HeldCopy
{
protected:
    ImportOfferTest()
    {
        offer.setEngine(&engine);
        offer.setDisplayName(u"CARD"_s);
        QObject::connect(&offer, &ImportOffer::accepted, [this] { done.push_back(u"accept"_s); });
        QObject::connect(&offer, &ImportOffer::preferencesDue, [this] { done.push_back(u"preferences"_s); });
        QObject::connect(&offer, &ImportOffer::lookBegan, [this] { done.push_back(u"look"_s); });
        QObject::connect(&offer, &ImportOffer::lookedAt, [this] { done.push_back(u"looked at"_s); });
    }

    void count(int clips)
    {
        offer.setProperty("clipCount", clips);
        offer.setProperty("isCounted", true);
    }

    QTimer &look() { return *offer.findChild<QTimer *>(); }

    QStringList take() { return std::exchange(done, {}); }

    ImportOffer offer;
    QStringList done;
};

using testing::ElementsAre;
using testing::IsEmpty;

} // namespace

TEST_F(ImportOfferTest, OneClipIsAClipAndAnyOtherNumberAreClips)
{
    EXPECT_EQ(offer.body(), u"CARD — looking for clips…"_s);
    count(1);
    EXPECT_EQ(offer.body(), u"CARD · 1 clip found. Import and sort it into your Shoots folder?"_s);
    for (const int clips : {2, 0, 20'000}) {
        count(clips);
        EXPECT_EQ(offer.body(), u"CARD · %1 clips found. Import and sort it into your Shoots folder?"_s.arg(clips));
    }
}

TEST_F(ImportOfferTest, AcceptingBringsTheCardInOrOpensPreferencesWhereAFolderIsMissing)
{
    EXPECT_EQ(offer.answer(), u"Import & Sort"_s);
    EXPECT_EQ(offer.symbol(), u"sdcard"_s);
    offer.accept();
    engine.setImportRoot(std::nullopt);
    EXPECT_EQ(offer.answer(), u"Open Preferences"_s);
    EXPECT_EQ(offer.title(), u"Set a Shoots folder first"_s);
    EXPECT_EQ(offer.symbol(), u"folder"_s);
    EXPECT_EQ(offer.checking(), QString());
    offer.accept();
    EXPECT_THAT(take(), ElementsAre(u"accept"_s, u"preferences"_s));
}

TEST_F(ImportOfferTest, WarnsOfACopyThatAcceptingStopsAndKeepsTheRoomForTheSameCard)
{
    EXPECT_FALSE(offer.warns());
    EXPECT_FALSE(offer.description().endsWith(offer.warning()));
    startCopy();
    EXPECT_TRUE(offer.warns());
    EXPECT_TRUE(offer.description().endsWith(u' ' + offer.warning()));
    copying.open();
    ASSERT_TRUE(waitUntil([this] { return !engine.isCopying(); }));
    EXPECT_FALSE(offer.warns());
    EXPECT_TRUE(offer.hasWarned());
    offer.setDisplayName(u"NEXT"_s);
    EXPECT_FALSE(offer.hasWarned());
}

TEST_F(ImportOfferTest, WhereNothingCanBeImportedNothingIsStopped)
{
    startCopy();
    engine.setImportRoot(std::nullopt);
    EXPECT_FALSE(offer.warns());
    EXPECT_EQ(offer.description(), offer.body());
}

TEST_F(ImportOfferTest, TakesKeysOnceItHasBeenInReachForHalfASecond)
{
    EXPECT_EQ(look().intervalAsDuration(), std::chrono::milliseconds(500));
    EXPECT_FALSE(look().isActive()) << "out of reach";
    offer.setInReach(true);
    EXPECT_TRUE(look().isActive());
    EXPECT_FALSE(offer.answersKeys());
    EXPECT_TRUE(waitUntil([this] { return offer.answersKeys(); }));
    EXPECT_THAT(take(), ElementsAre(u"look"_s, u"looked at"_s));
    offer.setInReach(false);
    EXPECT_FALSE(offer.answersKeys());
    EXPECT_FALSE(look().isActive());
    EXPECT_THAT(take(), ElementsAre(u"look"_s));
}

TEST_F(ImportOfferTest, AnotherCardIsLookedAtAnewAndTheSameOneIsNot)
{
    offer.setInReach(true);
    EXPECT_TRUE(waitUntil([this] { return offer.answersKeys(); }));
    take();
    offer.setDisplayName(u"CARD"_s);
    EXPECT_TRUE(offer.answersKeys());
    EXPECT_THAT(take(), IsEmpty());
    offer.setDisplayName(u"NEXT"_s);
    EXPECT_FALSE(offer.answersKeys());
    EXPECT_TRUE(look().isActive());
    EXPECT_THAT(take(), ElementsAre(u"look"_s));
}
