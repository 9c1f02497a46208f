// classify_photos TSV: how the local tier files photos whose bin is known. The list has a bin and a path in each line,
// apart by a tab, the path relative to the list; a first line that says "bin" is passed over, and so are further
// columns. Each photo is taken for a clip of one frame.
#include <array>
#include <atomic>
#include <chrono>
#include <fstream>
#include <iostream>
#include <sstream>
#include <thread>

#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include "classify/ModelRequests.h"
#include "classify/VisionClassifier.h"
#include "core/BinRules.h"
#include "core/RoomLabel.h"

using namespace larkspan;

namespace {

struct Photo
{
    QString bin;
    std::filesystem::path file;
    QString filed; // where the rules put it
    double confidence = 0.0;
    bool needsReview = false;

    bool isRight() const { return filed == bin; }
};

// "Agent / Talent (portrait)" tells a portrait from a person in a scene; it is filed as "Agent / Talent".
QString binOf(const std::string &label)
{
    return QString::fromStdString(label).section(QStringLiteral(" ("), 0, 0);
}

std::vector<Photo> readList(const std::filesystem::path &list)
{
    std::ifstream stream(list);
    std::vector<Photo> photos;
    for (std::string line; std::getline(stream, line);) {
        std::istringstream fields(line);
        std::string bin;
        std::string path;
        if (std::getline(fields, bin, '\t') && std::getline(fields, path, '\t') && bin != "bin") {
            photos.push_back({binOf(bin), list.parent_path() / path});
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

double ratio(double part, double whole)
{
    return whole > 0.0 ? part / whole : 0.0;
}

// How far confidence is from the share that is right, over ten equal steps of confidence, weighted by their photos.
double calibrationError(const std::vector<Photo> &photos)
{
    struct Step
    {
        double photos = 0.0, right = 0.0, confidence = 0.0;
    };
    std::array<Step, 10> steps;
    for (const auto &photo : photos) {
        auto &step = steps[static_cast<std::size_t>(std::clamp(photo.confidence * 10.0, 0.0, 9.0))];
        step.photos += 1.0;
        step.right += photo.isRight() ? 1.0 : 0.0;
        step.confidence += photo.confidence;
    }
    double error = 0.0;
    for (const auto &step : steps) {
        error += std::abs(step.right - step.confidence);
    }
    return ratio(error, static_cast<double>(photos.size()));
}

QJsonObject report(const std::vector<Photo> &photos, double seconds)
{
    struct Tally
    {
        double photos = 0.0, filed = 0.0, right = 0.0;
    };
    std::map<QString, Tally> tallies;
    std::map<QString, std::map<QString, int>> confusion;
    Tally all;
    double sure = 0.0;
    double sureAndRight = 0.0;
    for (const auto &photo : photos) {
        tallies[photo.bin].photos += 1.0;
        tallies[photo.filed].filed += 1.0;
        ++confusion[photo.bin][photo.filed];
        const double right = photo.isRight() ? 1.0 : 0.0;
        tallies[photo.bin].right += right;
        all.right += right;
        sure += photo.needsReview ? 0.0 : 1.0;
        sureAndRight += photo.needsReview ? 0.0 : right;
    }
    QJsonObject perBin;
    for (const auto &[bin, tally] : tallies) {
        perBin[bin] = QJsonObject{{QStringLiteral("photos"), tally.photos},
                                  {QStringLiteral("recall"), ratio(tally.right, tally.photos)},
                                  {QStringLiteral("precision"), ratio(tally.right, tally.filed)}};
    }
    QJsonObject confused;
    for (const auto &[bin, row] : confusion) {
        QJsonObject cells;
        for (const auto &[filed, count] : row) {
            cells[filed] = count;
        }
        confused[bin] = cells;
    }
    const auto count = static_cast<double>(photos.size());
    return {{QStringLiteral("photos"), count},
            {QStringLiteral("accuracy"), ratio(all.right, count)},
            {QStringLiteral("perBin"), perBin},
            {QStringLiteral("confusion"), confused},
            {QStringLiteral("filedPrecision"), ratio(sureAndRight, sure)},
            {QStringLiteral("reviewShare"), ratio(count - sure, count)},
            {QStringLiteral("calibrationError"), calibrationError(photos)},
            {QStringLiteral("framesPerSecond"), ratio(count, seconds)}};
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
    std::cout << QJsonDocument(report(photos, seconds.count())).toJson(QJsonDocument::Compact).constData() << '\n';
}
