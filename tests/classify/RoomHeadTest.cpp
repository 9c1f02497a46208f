#include "classify/RoomHead.h"

#include <fstream>

#include <gmock/gmock.h>
#include <QtCore/QCryptographicHash>

#include "classify/ObjectDetector.h"
#include "core/RoomLabel.h"
#include "tests/support/TempFolder.h"

using namespace larkspan;
using testing::Each;

namespace {

const std::filesystem::path Shipped = std::filesystem::path(LARKSPAN_MODELS) / "rooms.head";

const RoomHead &shipped()
{
    static const auto head = RoomHead::load(Shipped);
    return head ? *head : throw std::runtime_error(head.error().detail);
}

std::string bytesOf(const std::filesystem::path &file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

ModelError::Reason reasonFor(const std::string &bytes)
{
    const test::TempFolder folder;
    folder.write("rooms.head", bytes);
    const auto head = RoomHead::load(folder / "rooms.head");
    if (head) {
        throw std::runtime_error("the head was loaded");
    }
    EXPECT_EQ(head.error().file, folder / "rooms.head");
    EXPECT_FALSE(head.error().detail.empty());
    return head.error().reason;
}

// Some features, others for each number.
std::vector<float> features(int number)
{
    std::vector<float> values;
    for (int i = 0; i < ObjectDetector::featureCount; ++i) {
        values.push_back(static_cast<float>((i * 37 + number * 101) % 97) / 48.0f - 0.3f);
    }
    return values;
}

} // namespace

TEST(RoomHead, SpeaksForEveryBinUnderOneNameOfTheTable)
{
    std::vector<QString> bins;
    for (const auto &identifier : shipped().identifiers()) {
        const auto entry = RoomLabel::binsByIdentifier().find(identifier);
        ASSERT_NE(entry, RoomLabel::binsByIdentifier().end()) << identifier.toStdString();
        ASSERT_EQ(entry->second.size(), 1u) << identifier.toStdString();
        bins.push_back(entry->second.front());
    }
    std::vector<QString> all;
    for (const auto &label : RoomLabel::all()) {
        all.push_back(label.name);
    }
    EXPECT_EQ(bins, all);
}

TEST(RoomHead, ShipsInLessThanFourMegabytes)
{
    EXPECT_LT(std::filesystem::file_size(Shipped), 4'000'000u);
}

TEST(RoomHead, SaysEverythingBetweenZeroAndOne)
{
    for (int number = 0; number < 20; ++number) {
        const auto reading = shipped().read(features(number), features(number + 1)).value();
        ASSERT_EQ(reading.scenes.size(), shipped().identifiers().size());
        for (const auto &scene : reading.scenes) {
            EXPECT_GE(scene.confidence, 0.0f);
            EXPECT_LE(scene.confidence, 1.0f);
        }
        EXPECT_THAT(reading.trust, Each(testing::AllOf(testing::Ge(0.0f), testing::Le(1.0f))));
    }
}

TEST(RoomHead, ReadsTheSameFeaturesAlikeBitForBit)
{
    const auto again = RoomHead::load(Shipped).value();
    for (int number = 0; number < 5; ++number) {
        const auto a = shipped().read(features(number), features(number + 1)).value();
        const auto b = again.read(features(number), features(number + 1)).value();
        EXPECT_EQ(a.trust, b.trust);
        EXPECT_EQ(a.print->values(), b.print->values());
    }
}

TEST(RoomHead, TheWholeAndTheMiddleSayThePlaceAlikeButThePrintIsOfTheWhole)
{
    const auto whole = shipped().read(features(1), features(1)).value();
    const auto both = shipped().read(features(1), features(2)).value();
    const auto swapped = shipped().read(features(2), features(1)).value();
    EXPECT_NE(both.trust, whole.trust);
    EXPECT_EQ(both.trust, swapped.trust);
    EXPECT_EQ(both.print->values(), whole.print->values());
    EXPECT_NE(both.print->values(), swapped.print->values());
}

TEST(RoomHead, RefusesFeaturesThatItWasNotTrainedOn)
{
    const auto good = features(1);
    auto infinite = good;
    infinite.back() = INFINITY;
    for (const auto &bad : {std::vector<float>(), std::vector<float>(ObjectDetector::featureCount - 1, 1.0f),
                            std::vector<float>(ObjectDetector::featureCount, NAN), infinite}) {
        EXPECT_FALSE(shipped().read(bad, good));
        EXPECT_FALSE(shipped().read(good, bad));
    }
    EXPECT_TRUE(shipped().read(good, good));
}

TEST(RoomHead, TakesFeaturesFarBeyondAnythingSeen)
{
    const std::vector<float> far(ObjectDetector::featureCount, 1e30f);
    const auto reading = shipped().read(far, far);
    ASSERT_TRUE(reading);
    for (const auto &scene : reading->scenes) {
        EXPECT_TRUE(std::isfinite(scene.confidence));
    }
}

TEST(RoomHead, AMissingFileIsToldFromABrokenOne)
{
    const test::TempFolder folder;
    EXPECT_EQ(RoomHead::load(folder / "rooms.head").error().reason, ModelError::Reason::Missing);
    std::filesystem::create_directory(folder / "rooms.head");
    EXPECT_EQ(RoomHead::load(folder / "rooms.head").error().reason, ModelError::Reason::Missing);
}

TEST(RoomHead, ATruncatedFileIsBrokenWhereverItIsCut)
{
    const auto whole = bytesOf(Shipped);
    for (const auto size : {std::size_t(0), std::size_t(4), std::size_t(11), std::size_t(12), std::size_t(43),
                            std::size_t(60), std::size_t(5000), whole.size() / 2, whole.size() - 1}) {
        EXPECT_EQ(reasonFor(whole.substr(0, size)), ModelError::Reason::Broken) << size;
    }
}

TEST(RoomHead, AFileWithAnyByteChangedOrAddedIsBroken)
{
    const auto whole = bytesOf(Shipped);
    for (const auto at : {std::size_t(0), std::size_t(13), std::size_t(40), whole.size() / 2, whole.size() - 1}) {
        auto spoilt = whole;
        spoilt[at] = static_cast<char>(spoilt[at] ^ 0x10);
        EXPECT_EQ(reasonFor(spoilt), ModelError::Reason::Broken) << at;
    }
    EXPECT_EQ(reasonFor(whole + '\0'), ModelError::Reason::Broken);
    EXPECT_EQ(reasonFor("<html>404 Not Found</html> and some more to be long enough"), ModelError::Reason::Broken);
}

TEST(RoomHead, AHeadOfAnotherVersionIsToldAsSuch)
{
    for (const char version : {1, 3}) {
        auto other = bytesOf(Shipped);
        other[8] = version;
        EXPECT_EQ(reasonFor(other), ModelError::Reason::OtherModel);
    }
}

TEST(RoomHead, SizesThatAskForMoreThanTheFileHoldsAreBroken)
{
    // Sound by its checksum, so that the sizes themselves are put to the test.
    const auto summed = [](std::string bytes) {
        const auto sum =
            QCryptographicHash::hash(QByteArrayView(bytes.data(), qsizetype(bytes.size())), QCryptographicHash::Sha256);
        return bytes + sum.toStdString();
    };
    const std::string start("LKROOMS\n\2\0\0\0", 12);
    EXPECT_EQ(reasonFor(summed(start)), ModelError::Reason::Broken);
    EXPECT_EQ(reasonFor(summed(start + std::string(16, '\xff'))), ModelError::Reason::Broken);
    EXPECT_EQ(reasonFor(summed(start + std::string(16, '\0'))), ModelError::Reason::Broken);
    EXPECT_EQ(reasonFor(summed(start + std::string("\x10\0\0\0\x10\0\0\0\x10\0\0\0\x03\0\0\0abc", 19))),
              ModelError::Reason::Broken);
}
