// classify_photos TSV: how the local tier files photos whose bin is known. The list has a bin and a path in each line,
// apart by a tab, the path relative to the list; a first line that says "bin" is passed over, and so are further
// columns. Each photo is taken for a clip of one frame.
#include <atomic>
#include <chrono>
#include <fstream>
#include <iostream>
#include <sstream>
#include <thread>

#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include "bench/Accuracy.h"
#include "classify/ModelRequests.h"
#include "classify/VisionClassifier.h"
#include "core/BinRules.h"
#include "core/RoomLabel.h"

using namespace larkspan;
using namespace larkspan::bench;

namespace {

struct Photo : Filed
{
    std::filesystem::path file;
};

std::vector<Photo> readList(const std::filesystem::path &list)
{
    std::ifstream stream(list);
    std::vector<Photo> photos;
    for (std::string line; std::getline(stream, line);) {
        std::istringstream fields(line);
        std::string bin;
        std::string path;
        if (std::getline(fields, bin, '\t') && std::getline(fields, path, '\t') && bin != "bin") {
            photos.push_back({{.bin = binOfLabel(bin)}, list.parent_path() / path});
        }
    }
    return photos;
}

void file(Photo &photo, const VisionClassifier &classifier)
{
    const QImage image(QString::fromStdString(photo.file.string()));
    std::vector<QImage> frames;
    if (!image.isNull()) {
        frames.push_back(image.scaled(448, 448, Qt::KeepAspectRatio, Qt::SmoothTransformation));
    }
    MediaClip clip{FileUrl(photo.file)};
    const SortOptions options;
    const auto decision = classification(classifier.analyze(frames), clip, options);
    clip.primaryBin = decision.primary;
    clip.extraBins = decision.secondaries;
    clip.confidence = decision.score;
    clip.runnerUp = decision.runnerUp;
    clip.runnerUpScore = decision.runnerUpScore;
    applyReviewFlags(clip, options);
    photo.filed = clip.primaryBin;
    photo.runnerUp = clip.runnerUp;
    photo.confidence = clip.confidence;
    photo.needsReview = clip.needsReview;
}

void fileAll(std::vector<Photo> &photos, const VisionClassifier &classifier)
{
    std::atomic<std::size_t> next = 0;
    std::vector<std::jthread> workers;
    for (unsigned i = 0; i < std::max(1u, std::thread::hardware_concurrency()); ++i) {
        workers.emplace_back([&] {
            for (auto at = next++; at < photos.size(); at = next++) {
                file(photos[at], classifier);
            }
        });
    }
}

} // namespace

int main(int argc, char **argv)
{
    auto photos = argc == 2 ? readList(argv[1]) : std::vector<Photo>();
    if (photos.empty()) {
        std::cerr << "usage: classify_photos TSV\n";
        return 2;
    }
    const auto models = VisionModels::load();
    if (!models) {
        std::cerr << "classify_photos: " << models.error().file.string() << ": " << models.error().detail << '\n';
        return 1;
    }
    const VisionClassifier classifier(std::make_shared<const ModelRequests>(*models));
    const auto start = std::chrono::steady_clock::now();
    fileAll(photos, classifier);
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
    QJsonObject report = accuracyReport({photos.begin(), photos.end()});
    report[QStringLiteral("photos")] = static_cast<double>(photos.size());
    report[QStringLiteral("framesPerSecond")] = static_cast<double>(photos.size()) / seconds.count();
    std::cout << QJsonDocument(report).toJson(QJsonDocument::Compact).constData() << '\n';
}
