#include "classify/vision/ModelRequests.h"

#include <thread>

#include <gmock/gmock.h>
#include <QtGui/QPainter>

#include "classify/vision/VisionClassifier.h"
#include "core/bins/RoomLabel.h"

using namespace larkspan;
using testing::IsEmpty;

namespace {

std::shared_ptr<const ModelRequests> load(VisionTimings *timings = nullptr)
{
    auto models = VisionModels::load(LARKSPAN_MODELS);
    return models ? std::make_shared<const ModelRequests>(*models, timings)
                  : throw std::runtime_error(models.error().detail);
}

// Loaded once: that takes longer than looking at a frame, and requests keep nothing from one frame to the next.
std::shared_ptr<const ModelRequests> requests()
{
    static const auto loaded = load();
    return loaded;
}

// The answer to a clip of this frame alone.
std::optional<FrameObservations> answer(const ModelRequests &vision, const QImage &frame)
{
    return vision.perform({&frame, 1}).front();
}

// A made-up picture, another for each number: soft blobs over a gradient.
QImage drawn(QSize size, int number)
{
    QImage image(size, QImage::Format_RGB32);
    QPainter painter(&image);
    QLinearGradient sky(0, 0, 0, size.height());
    sky.setColorAt(0, QColor::fromHsv(number * 47 % 360, 90, 240));
    sky.setColorAt(1, QColor::fromHsv(number * 101 % 360, 120, 120));
    painter.fillRect(image.rect(), sky);
    painter.setRenderHint(QPainter::Antialiasing);
    for (int i = 0; i < 12; ++i) {
        painter.setBrush(QColor::fromHsv((number * 31 + i * 77) % 360, 150, 60 + i * 15));
        painter.drawEllipse(QPoint((number * 13 + i * 59) % size.width(), (number * 29 + i * 83) % size.height()),
                            10 + i * 5, 14 + i * 3);
    }
    return image;
}

bool same(const FrameObservations &a, const FrameObservations &b)
{
    const auto identical = [](const ClassificationObservation &x, const ClassificationObservation &y) {
        return x.identifier == y.identifier && x.confidence == y.confidence;
    };
    return std::ranges::equal(a.classifications, b.classifications, identical) &&
           a.featurePrint->values() == b.featurePrint->values() && a.humans.size() == b.humans.size() &&
           a.bodyPoses == b.bodyPoses && a.faces == b.faces;
}

} // namespace

TEST(ModelRequests, AnswerBitForBitAlikeWhateverTheNumberOfThreads)
{
    constexpr int Count = 8;
    const auto vision = requests();
    std::vector<FrameObservations> alone;
    for (int i = 0; i < Count; ++i) {
        alone.push_back(answer(*vision, drawn({448, 252}, i)).value());
    }

    std::vector<std::optional<FrameObservations>> together(Count);
    {
        std::vector<std::jthread> threads;
        for (int i = 0; i < Count; ++i) {
            threads.emplace_back([&, i] {
                together[static_cast<std::size_t>(i)] = answer(*vision, drawn({448, 252}, i));
            });
        }
    }
    for (std::size_t i = 0; i < Count; ++i) {
        ASSERT_TRUE(together[i]);
        EXPECT_TRUE(same(alone[i], *together[i])) << "frame " << i;
    }
}

TEST(ModelRequests, AnEmptyImageIsAFailedFrame)
{
    EXPECT_FALSE(answer(*requests(), QImage()));
}

TEST(ModelRequests, AFailedFrameLeavesTheOthersOfTheClipAsTheyAre)
{
    const auto vision = requests();
    const std::vector whole{drawn({448, 252}, 1), drawn({448, 252}, 2)};
    const std::vector torn{drawn({448, 252}, 1), QImage(), drawn({448, 252}, 2)};
    const auto expected = vision->perform(whole);
    const auto found = vision->perform(torn);
    ASSERT_EQ(found.size(), 3u);
    EXPECT_FALSE(found[1]);
    EXPECT_TRUE(same(found[0].value(), expected[0].value()));
    EXPECT_TRUE(same(found[2].value(), expected[1].value()));
}

TEST(ModelRequests, TheFramesOfAClipSayOnePlaceTogetherButEachHasItsOwnPrint)
{
    const auto found = requests()->perform(std::vector{drawn({448, 252}, 1), drawn({448, 252}, 2)});
    const auto kitchenIn = [&](std::size_t frame) {
        const auto &all = found[frame]->classifications;
        return std::ranges::find(all, QStringLiteral("kitchen"), &ClassificationObservation::identifier)->confidence;
    };
    EXPECT_EQ(kitchenIn(0), kitchenIn(1));
    EXPECT_NE(found[0]->featurePrint->values(), found[1]->featurePrint->values());
}

TEST(ModelRequests, FramesOfAnyShapeAndFormatAreLookedAt)
{
    const auto vision = requests();
    for (const QSize size : {QSize(1, 1), QSize(448, 1), QSize(3, 448), QSize(252, 448), QSize(448, 448)}) {
        const auto found = answer(*vision, drawn(size, 1));
        ASSERT_TRUE(found) << size.width() << " by " << size.height();
        EXPECT_NE(found->featurePrint, nullptr);
    }
    for (const auto format : {QImage::Format_Grayscale8, QImage::Format_ARGB32, QImage::Format_RGBA64,
                              QImage::Format_Mono, QImage::Format_RGB888}) {
        EXPECT_TRUE(answer(*vision, drawn({448, 252}, 2).convertToFormat(format))) << format;
    }
}

TEST(ModelRequests, AnEvenFrameShowsNoPersonAndNothingForAnyRoom)
{
    for (const auto color : {Qt::black, Qt::white, Qt::gray}) {
        QImage frame(448, 252, QImage::Format_RGB32);
        frame.fill(color);
        const auto found = answer(*requests(), frame).value();
        EXPECT_EQ(found.bodyPoses, 0);
        EXPECT_EQ(found.faces, 0);
        for (const auto &human : found.humans) {
            EXPECT_LE(human.confidence, 0.35f);
        }
    }
}

TEST(ModelRequests, TellsWhereTheTimeGoesWhenAsked)
{
    VisionTimings timings;
    ASSERT_TRUE(answer(*load(&timings), drawn({448, 252}, 3)));
    EXPECT_EQ(timings.objects.runs, 1);
    EXPECT_GT(timings.objects.nanoseconds, 0);
    EXPECT_EQ(timings.scene.runs, 1);
    EXPECT_EQ(timings.rooms.runs, 1);
}

TEST(ModelRequests, TheClassifierListsWhatTheModelsCanName)
{
    const auto identifiers = VisionClassifier(requests()).supportedIdentifiers();
    EXPECT_TRUE(std::ranges::is_sorted(identifiers));
    EXPECT_EQ(std::ranges::adjacent_find(identifiers), identifiers.end());
    EXPECT_EQ(identifiers.size(), static_cast<std::size_t>(ObjectDetector::kindCount) + RoomLabel::all().size());
    EXPECT_TRUE(std::ranges::binary_search(identifiers, QStringLiteral("swimming_pool")));
    EXPECT_TRUE(std::ranges::binary_search(identifiers, QStringLiteral("sofa")));
}
