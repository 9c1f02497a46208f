#include "classify/vision/RoomHead.h"

#include <gmock/gmock.h>
#include <QtCore/QCryptographicHash>

#include "classify/vision/ObjectDetector.h"
#include "classify/vision/SceneNetwork.h"
#include "core/bins/RoomLabel.h"
#include "tests/support/FfmpegMedia.h"
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

std::string summed(const std::string &bytes)
{
    const auto sum =
        QCryptographicHash::hash(QByteArrayView(bytes.data(), qsizetype(bytes.size())), QCryptographicHash::Sha256);
    return bytes + sum.toStdString();
}

template <typename Number>
std::string raw(std::initializer_list<Number> numbers)
{
    return {reinterpret_cast<const char *>(std::data(numbers)), numbers.size() * sizeof(Number)};
}

// A head for a kitchen and a closet, of one feature and without weights. A kitchen is sure from 0.6 on in a frame and
// from 0.4 on in a clip, a closet from 0.6 and 0.9 on.
RoomHead kitchenOrCloset()
{
    const std::string names = "kitchen\ncloset";
    auto bytes = "LKROOMS\n" + raw<std::uint32_t>({3, 1, 1, static_cast<std::uint32_t>(names.size())}) + names;
    bytes += raw({0.0f, 1.0f});                                  // mean and spread
    bytes += std::string(3 * 2, '\0') + raw({0.0f, 0.0f, 0.0f}); // the map to places
    bytes += std::string(2, '\0') + raw({1.0f});                 // the map to a print
    bytes += raw({0.6f, 0.6f}) + raw({0.4f, 0.9f}) + raw({0.2f, 0.065f, 0.5f, 22.0f});
    const test::TempFolder folder;
    folder.write("rooms.head", summed(bytes));
    return RoomHead::load(folder / "rooms.head").value();
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
std::vector<float> features(int count, int number)
{
    std::vector<float> values;
    for (int i = 0; i < count; ++i) {
        values.push_back(static_cast<float>((i * 37 + number * 101) % 97) / 48.0f - 0.3f);
    }
    return values;
}

std::vector<float> objects(int number)
{
    return features(ObjectDetector::featureCount, number);
}

std::vector<float> scene(int number)
{
    return features(SceneNetwork::featureCount, number);
}

RoomHead::Word word(int number)
{
    return shipped().hear(objects(number), scene(number)).value();
}

// A word that is as good as sure of one output.
RoomHead::Word sureOf(std::size_t output)
{
    RoomHead::Word word{.logits = std::vector<float>(shipped().identifiers().size() + 1, 0.0f), .print = nullptr};
    word.logits[output] = 12.0f;
    return word;
}

float sum(const std::vector<ClassificationObservation> &scenes)
{
    float all = 0.0f;
    for (const auto &scene : scenes) {
        all += scene.confidence;
    }
    return all;
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
        const auto reading = shipped().read(std::vector{word(number), word(number + 1)});
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
        const auto other = again.hear(objects(number), scene(number)).value();
        EXPECT_EQ(other.logits, word(number).logits);
        EXPECT_EQ(other.print->values(), word(number).print->values());
    }
}

TEST(RoomHead, FramesThatAgreeAreSure)
{
    const auto reading = shipped().read(std::vector(4, sureOf(2)));
    EXPECT_GT(reading.scenes[2].confidence, 0.9f * sum(reading.scenes));
    EXPECT_GT(reading.trust[2], 0.9f);
}

TEST(RoomHead, SureFramesThatDisagreeDontAddUpToASureClip)
{
    const auto reading = shipped().read(std::vector{sureOf(0), sureOf(1), sureOf(2), sureOf(3)});
    const float all = sum(reading.scenes);
    for (const auto &scene : reading.scenes) {
        EXPECT_LT(scene.confidence, 0.18f * all);
    }
    EXPECT_THAT(reading.trust, Each(0.0f));
}

TEST(RoomHead, FramesThatAreSureOfNoPlaceAreEvidenceOfNone)
{
    const auto reading = shipped().read(std::vector(4, sureOf(shipped().identifiers().size())));
    EXPECT_EQ(sum(reading.scenes), 0.0f);
}

TEST(RoomHead, EachBinHasABarForAFrameAndAnotherForAClip)
{
    const auto head = kitchenOrCloset();
    const auto isSure = [&](std::size_t frames, float kitchen, float closet) {
        const RoomHead::Word word{.logits = {std::log(kitchen), std::log(closet), std::log(1.0f - kitchen - closet)},
                                  .print = nullptr};
        const auto trust = head.read(std::vector(frames, word)).trust;
        return *std::ranges::max_element(trust) > 0.0f;
    };
    EXPECT_FALSE(isSure(1, 0.5f, 0.3f));
    EXPECT_TRUE(isSure(1, 0.7f, 0.2f));
    EXPECT_TRUE(isSure(4, 0.5f, 0.3f));
    EXPECT_TRUE(isSure(1, 0.2f, 0.7f));
    EXPECT_FALSE(isSure(4, 0.2f, 0.7f));
    EXPECT_TRUE(isSure(4, 0.03f, 0.95f));
}

TEST(RoomHead, AClipThatHalfShowsNothingHasEvidenceForEveryPlaceOrForNone)
{
    const std::size_t nothing = shipped().identifiers().size();
    for (float logit = -6.0f; logit <= 6.0f; logit += 0.25f) {
        auto word = sureOf(nothing);
        word.logits[nothing] = logit;
        word.logits[0] = 1.0f;
        const auto reading = shipped().read(std::vector{word});
        const auto heard = std::ranges::count_if(reading.scenes, [](const auto &s) { return s.confidence >= 0.06f; });
        EXPECT_TRUE(heard == 0 || heard == static_cast<std::ptrdiff_t>(nothing)) << logit;
    }
}

TEST(RoomHead, AKindOfShotIsNoSurePlace)
{
    for (std::size_t i = 0; i < shipped().identifiers().size(); ++i) {
        const auto &name = shipped().identifiers()[i];
        const auto &bin = RoomLabel::binsByIdentifier().at(name).front();
        const auto reading = shipped().read(std::vector{sureOf(i)});
        EXPECT_EQ(reading.trust[i] > 0.0f, !RoomLabel::exclusiveBins().contains(bin)) << name.toStdString();
    }
}

TEST(RoomHead, WithoutFramesThereIsNoEvidence)
{
    EXPECT_TRUE(shipped().read({}).scenes.empty());
}

TEST(RoomHead, RefusesFeaturesThatItWasNotTrainedOn)
{
    auto infinite = scene(1);
    infinite.back() = INFINITY;
    for (const auto &bad : {std::vector<float>(), features(SceneNetwork::featureCount - 1, 1),
                            std::vector<float>(SceneNetwork::featureCount, NAN), infinite}) {
        EXPECT_FALSE(shipped().hear(objects(1), bad));
    }
    EXPECT_FALSE(shipped().hear({}, scene(1)));
    EXPECT_TRUE(shipped().hear(objects(1), scene(1)));
}

TEST(RoomHead, TakesFeaturesFarBeyondAnythingSeen)
{
    const auto far = shipped().hear(std::vector<float>(ObjectDetector::featureCount, 1e30f),
                                    std::vector<float>(SceneNetwork::featureCount, 1e30f));
    ASSERT_TRUE(far);
    for (const auto &scene : shipped().read(std::vector{*far}).scenes) {
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
    const auto whole = test::bytesOf(Shipped);
    for (const auto size : {std::size_t(0), std::size_t(4), std::size_t(11), std::size_t(12), std::size_t(43),
                            std::size_t(60), std::size_t(5000), whole.size() / 2, whole.size() - 1}) {
        EXPECT_EQ(reasonFor(whole.substr(0, size)), ModelError::Reason::Broken) << size;
    }
}

TEST(RoomHead, AFileWithAnyByteChangedOrAddedIsBroken)
{
    const auto whole = test::bytesOf(Shipped);
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
    for (const char version : {1, 2, 4}) {
        auto other = test::bytesOf(Shipped);
        other[8] = version;
        EXPECT_EQ(reasonFor(other), ModelError::Reason::OtherModel);
    }
}

// Sound by their checksum, so that the sizes themselves are put to the test.
TEST(RoomHead, SizesThatAskForMoreThanTheFileHoldsAreBroken)
{
    const std::string start("LKROOMS\n\3\0\0\0", 12);
    EXPECT_EQ(reasonFor(summed(start)), ModelError::Reason::Broken);
    EXPECT_EQ(reasonFor(summed(start + std::string(16, '\xff'))), ModelError::Reason::Broken);
    EXPECT_EQ(reasonFor(summed(start + std::string(16, '\0'))), ModelError::Reason::Broken);
    EXPECT_EQ(reasonFor(summed(start + std::string("\x10\0\0\0\x10\0\0\0\x03\0\0\0abc", 15))),
              ModelError::Reason::Broken);
}
