#include "classify/ClipProbe.h"

#include <gmock/gmock.h>

#include "tests/classify/MediaSamples.h"
#include "tests/support/TempFolder.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

// What the probe writes, to be compared whole.
struct Probed
{
    double duration = 0.0;
    QSizeF naturalSize{0.0, 0.0};
    QSizeF displaySize{0.0, 0.0};
    std::int64_t frameDurationValue = 1001;
    std::int32_t frameDurationScale = 60000;

    friend bool operator==(const Probed &, const Probed &) = default;
};

void PrintTo(const Probed &probed, std::ostream *stream)
{
    *stream << probed.duration << " s, " << probed.naturalSize.width() << "x" << probed.naturalSize.height() << " as "
            << probed.displaySize.width() << "x" << probed.displaySize.height() << ", " << probed.frameDurationValue
            << "/" << probed.frameDurationScale;
}

Probed probed(const std::filesystem::path &path)
{
    const ClipPtr clip = probeClip(FileUrl(path));
    return {clip->duration, clip->naturalSize, clip->displaySize, clip->frameDurationValue, clip->frameDurationScale};
}

Date at(std::chrono::sys_days day, std::chrono::seconds time)
{
    return Date(day.time_since_epoch() + time);
}

constexpr auto shootDay = std::chrono::sys_days{std::chrono::year{2026} / std::chrono::May / 4};

} // namespace

TEST(ClipProbe, AMovieTellsItsLengthSizesAndFrameDuration)
{
    const auto &file = sharedMedia("plain.mov", picture("160x90", "30000/1001", "2.002") + h264);
    const Probed expected{2.002, {160, 90}, {160, 90}, 1001, 30000};
    EXPECT_EQ(probed(file), expected) << "a minimum frame duration of 1001/30000 keeps those numbers exactly";
}

TEST(ClipProbe, FrameDurationIsNeitherReducedNorRounded)
{
    const auto &file = sharedMedia("ticks.mp4", picture("160x90", "30", "1") + h264 + "-video_track_timescale 15360");
    const Probed expected{1.0, {160, 90}, {160, 90}, 512, 15360};
    EXPECT_EQ(probed(file), expected);
}

TEST(ClipProbe, ContainerDateWinsOverTheFileSystems)
{
    const auto &file =
        sharedMedia("dated.mov", picture("64x48", "25", "0.2") + h264 + "-metadata creation_time=2026-05-04T09:30:00Z");
    EXPECT_EQ(probeClip(FileUrl(file))->creationDate, at(shootDay, 9h + 30min));
}
