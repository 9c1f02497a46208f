#include "tests/shell/pictures/SampleShoot.h"

#include <algorithm>
#include <map>

#include "tests/demo/Scenes.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan::test {

namespace {

struct Sample
{
    const char *name;
    const char *scene;  // of the drawn house
    QRectF view;        // the part of it that the camera sees
    const char *scores; // what the models see: bin, a colon, evidence; separated by ";"
    double seconds;
};

constexpr QRectF all(0, 0, 1, 1);

const std::vector<Sample> &samples()
{
    static const std::vector<Sample> shoot{
        {"A001_C001_1120.mov", "A001_Front.mp4", all, "Exterior Front:1.8", 12.34},
        {"A001_C002_1120.mov", "A001_Front.mp4", {0.1, 0.15, 0.7, 0.7}, "Exterior Front:1.5", 9.2},
        {"A001_C003_1120.mov", "A002_Kitchen.mov", all, "Kitchen:1.9;Dining Room:0.2", 14.8},
        {"A001_C004_1120.mov", "A002_Kitchen.mov", {0, 0.1, 0.75, 0.75}, "Kitchen:1.6", 8.0},
        {"A001_C005_1120.mov", "A002_Kitchen.mov", {0.25, 0.2, 0.7, 0.7}, "Kitchen:1.2;Dining Room:1.15", 11.1},
        {"A001_C006_1120.mov", "A002_Kitchen.mov", {0.4, 0.3, 0.5, 0.5}, "Kitchen:1.4", 6.5},
        {"A001_C007_1120.mov", "A003_Living.mp4", all, "Living Room:1.7", 21.9},
        {"A001_C008_1120.mov", "A003_Living.mp4", {0.2, 0.1, 0.7, 0.7}, "Living Room:1.5", 17.0},
        {"A001_C009_1120.mov",
         "A003_Living.mp4",
         {0, 0.25, 0.6, 0.6},
         "Living Room:0.30;Bedroom:0.28;Kitchen:0.27;Dining Room:0.26;Office:0.25;Pool:0.25;Closet:0.2",
         13.3},
        {"A001_C010_1120.mov", "A004_Dining.mxf", all, "Dining Room:1.3;Kitchen:0.8", 10.0},
        {"A001_C011_1120.mov", "A004_Dining.mxf", {0.15, 0.2, 0.7, 0.7}, "Dining Room:1.5", 9.7},
        {"A001_C012_1120.mov", "A005_Hall.mp4", all, "Hallway / Stairs:1.6", 7.4},
        {"A001_C013_1120.mov", "A006_Bedroom.mts", all, "Bedroom:1.8", 15.5},
        {"A001_C014_1120.mov", "A006_Bedroom.mts", {0.2, 0.2, 0.7, 0.7}, "Bedroom:1.5", 12.0},
        {"A001_C015_1120.mov", "A006_Bedroom.mts", {0, 0, 0.6, 0.6}, "Bedroom:1.02;Office:1.0", 8.8},
        {"A001_C016_1120.mov", "A007_Bathroom.mov", all, "Bathroom:1.7", 6.2},
        {"A001_C017_1120.mov", "A007_Bathroom.mov", {0.3, 0.1, 0.6, 0.6}, "Bathroom:0.9;Laundry Room:0.88", 5.9},
        {"A001_C018_1120.mov", "A008_Pool.m4v", all, "Pool:1.9", 19.2},
        {"A001_C019_1120.mov", "A008_Pool.m4v", {0.1, 0.3, 0.6, 0.6}, "Pool:1.5", 11.6},
        {"A001_C020 lens cap still on, first take after lunch break.mov", "A010_LensCap.mp4", all, "", 2.1},
        {"DJI_0021.MP4", "DJI_0009.MP4", all, "Exterior Front:0.8", 34.0},
        {"DJI_0022.MP4", "DJI_0009.MP4", {0.1, 0.1, 0.8, 0.8}, "Exterior Front:0.7", 28.4},
        {"DJI_0023.MP4", "DJI_0009.MP4", {0.3, 0.2, 0.6, 0.6}, "Exterior Front:0.9", 41.7},
        {"DJI_0024.MP4", "DJI_0009.MP4", {0, 0.3, 0.7, 0.7}, "Exterior Front:0.6", 22.5},
    };
    return shoot;
}

const Sample *sampleOf(const FileUrl &url)
{
    const std::string name = url.lastPathComponent().toStdString();
    const auto found = std::ranges::find(samples(), name, &Sample::name);
    return found == samples().end() ? nullptr : &*found;
}

const QImage &pictureOf(const char *scene)
{
    static const std::vector<demo::Scene> scenes = demo::sampleShoot();
    return std::ranges::find(scenes, QLatin1String(scene), &demo::Scene::file)->picture;
}

class SampleClassifier : public FrameClassifier
{
public:
    FrameAnalysis analyze(std::span<const QImage> frames) const override
    {
        FrameAnalysis analysis{.featurePrint = std::make_shared<FeaturePrint>(std::vector<float>{0.0f})};
        for (const QString &score : frames.front().text(u"scores"_s).split(u';', Qt::SkipEmptyParts)) {
            analysis.scores[score.section(u':', 0, 0)] = score.section(u':', 1).toDouble();
        }
        return analysis;
    }
};

} // namespace

std::vector<std::string> sampleNames()
{
    std::vector<std::string> names;
    std::ranges::transform(samples(), std::back_inserter(names), &Sample::name);
    return names;
}

ClipPtr probeSample(const FileUrl &url)
{
    auto clip = std::make_shared<MediaClip>(url);
    if (const Sample *sample = sampleOf(url)) {
        const QSize size = pictureOf(sample->scene).size();
        clip->naturalSize = clip->displaySize = size.width() > size.height() ? QSizeF(3840, 2160) : QSizeF(2160, 3840);
        clip->duration = sample->seconds;
        clip->creationDate = Date(std::chrono::minutes(sample - samples().data()));
    }
    return clip;
}

Frames framesOfSample(const MediaClip &clip)
{
    const Sample *sample = sampleOf(clip.url);
    if (!sample) {
        return {};
    }
    const QImage &scene = pictureOf(sample->scene);
    const QRectF part(sample->view.x() * scene.width(), sample->view.y() * scene.height(),
                      sample->view.width() * scene.width(), sample->view.height() * scene.height());
    QImage frame = scene.copy(part.toRect()).scaled({448, 448}, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    frame.setText(u"scores"_s, QLatin1String(sample->scores));
    return {frame};
}

std::shared_ptr<const FrameClassifier> makeSampleClassifier()
{
    return std::make_shared<SampleClassifier>();
}

} // namespace larkspan::test
