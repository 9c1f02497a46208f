// The form in which a sorted shoot is kept on disk.
#include "core/projects/ProjectJson.h"

#include <gtest/gtest.h>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include "tests/core/projects/SomeProject.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace {

const CachedProject storedHouse = projectOf(FileUrl("/Shoots/House"));

} // namespace

TEST(ProjectJson, AFileWithAnyOneKeyMissingOrOfAnotherTypeFailsAsAWhole)
{
    const QJsonObject whole = QJsonDocument::fromJson(encodeProject(storedHouse)).object();
    const auto decodes = [](const QJsonObject &object) {
        return decodeProject(QJsonDocument(object).toJson()).has_value();
    };
    ASSERT_TRUE(decodes(whole));
    for (const QString &key : whole.keys()) {
        QJsonObject damaged = whole;
        damaged.remove(key);
        EXPECT_FALSE(decodes(damaged)) << key.toStdString();
        damaged[key] = QJsonValue();
        EXPECT_FALSE(decodes(damaged)) << key.toStdString();
    }
    const QJsonObject clip = whole[u"clips"_s][0].toObject();
    for (const QString &key : clip.keys()) {
        QJsonObject damagedClip = clip;
        damagedClip.remove(key);
        QJsonObject damaged = whole;
        damaged[u"clips"_s] = QJsonArray{clip, damagedClip};
        EXPECT_FALSE(decodes(damaged)) << key.toStdString();
        damagedClip[key] = QJsonObject();
        damaged[u"clips"_s] = QJsonArray{damagedClip};
        EXPECT_FALSE(decodes(damaged)) << key.toStdString();
    }
}

TEST(ProjectJson, AnEmptyPathOrABinThatIsNoTextMakesAProjectUnreadable)
{
    const QByteArray whole = encodeProject(storedHouse);
    for (const auto &[old, damaged] :
         {std::pair(R"("folderPath":"\/Shoots\/House")", R"("folderPath":"")"), std::pair(R"("Dining Room")", "1")}) {
        ASSERT_TRUE(whole.contains(old)) << old;
        EXPECT_EQ(decodeProject(QByteArray(whole).replace(old, damaged)), std::nullopt) << damaged;
    }
}

TEST(ProjectJson, AFileCutAnywhereIsNoProject)
{
    const QByteArray whole = encodeProject(storedHouse);
    for (qsizetype length = 0; length < whole.size(); ++length) {
        EXPECT_EQ(decodeProject(whole.left(length)), std::nullopt) << length;
    }
}

TEST(ProjectJson, NumbersThatDoNotFitMakeAProjectUnreadableAndHugeOnesThatFitAreTaken)
{
    const QByteArray whole = encodeProject(storedHouse);
    const auto with = [&whole](const char *old, const char *number) {
        EXPECT_TRUE(whole.contains(old)) << old;
        return decodeProject(QByteArray(whole).replace(old, number));
    };
    for (const char *number : {"1e300", "-1e300", "99999999999999999999", "2147483648", "60000.5"}) {
        EXPECT_FALSE(with("\"frameDurationScale\":60000", (std::string("\"frameDurationScale\":") + number).c_str()))
            << number;
    }
    for (const std::int32_t fits :
         {std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()}) {
        EXPECT_EQ(with("\"frameDurationScale\":60000", ("\"frameDurationScale\":" + std::to_string(fits)).c_str())
                      ->clips[0]
                      .frameDurationScale,
                  fits);
    }
    EXPECT_FALSE(with("\"clipCount\":1", "\"clipCount\":1e20"));
    EXPECT_FALSE(with("\"frameDurationValue\":9223372036854775807", "\"frameDurationValue\":9223372036854775808"));
    EXPECT_FALSE(with("\"savedAt\":799581600", "\"savedAt\":1e300"));
    EXPECT_FALSE(with("\"savedAt\":799581600", "\"savedAt\":NaN"));
    EXPECT_EQ(with("\"duration\":12.345", "\"duration\":1e300")->clips[0].duration, 1e300);
    EXPECT_EQ(with("\"duration\":12.345", "\"duration\":-0.5")->clips[0].duration, -0.5);
}

TEST(ProjectJson, NumbersThatJsonHasNoFormForAreKeptAsZeroAndFarDatesAtTheLimit)
{
    CachedProject odd = storedHouse;
    odd.clips[0].duration = std::numeric_limits<double>::infinity();
    odd.clips[0].confidence = std::numeric_limits<double>::quiet_NaN();
    odd.clips[0].creationDate = Date::max();
    const auto decoded = decodeProject(encodeProject(odd));
    ASSERT_TRUE(decoded);
    EXPECT_EQ(decoded->clips[0].duration, 0.0);
    EXPECT_EQ(decoded->clips[0].confidence, 0.0);
    EXPECT_GT(decoded->clips[0].creationDate, someDay);
    odd.clips[0].creationDate = distantPast;
    EXPECT_EQ(decodeProject(encodeProject(odd))->clips[0].creationDate, distantPast);
}
