#include "bench/LabelledFrames.h"

#include <atomic>
#include <chrono>
#include <fstream>
#include <iostream>
#include <sstream>
#include <thread>

#include <QtCore/QJsonDocument>

#include "classify/vision/ModelRequests.h"
#include "classify/vision/VisionClassifier.h"
#include "core/bins/BinRules.h"

namespace larkspan::bench {

namespace {

constexpr std::size_t noColumn = SIZE_MAX;
constexpr int longSide = 448; // pixels, as the sampler hands frames on

std::vector<std::string> fieldsOf(const std::string &line)
{
    std::istringstream stream(line);
    std::vector<std::string> fields;
    for (std::string field; std::getline(stream, field, '\t');) {
        fields.push_back(field);
    }
    return fields;
}

std::string fieldOr(const std::vector<std::string> &fields, std::size_t at, const std::string &otherwise)
{
    return at < fields.size() ? fields[at] : otherwise;
}

void file(LabelledFrames &item, const VisionClassifier &classifier)
{
    std::vector<QImage> frames;
    for (const auto &path : item.frames) {
        if (const QImage image(QString::fromStdString(path.string())); !image.isNull()) {
            frames.push_back(image.scaled(longSide, longSide, Qt::KeepAspectRatio, Qt::SmoothTransformation));
        }
    }
    MediaClip clip{FileUrl(item.frames.front())};
    const SortOptions options;
    const auto decision = classification(classifier.analyze(frames), clip, options);
    clip.primaryBin = decision.primary;
    clip.extraBins = decision.secondaries;
    clip.confidence = decision.score;
    clip.runnerUp = decision.runnerUp;
    clip.runnerUpScore = decision.runnerUpScore;
    applyReviewFlags(clip, options);
    item.filed = clip.primaryBin;
    item.runnerUp = clip.runnerUp;
    item.confidence = clip.confidence;
    item.needsReview = clip.needsReview;
}

} // namespace

std::vector<LabelledFrames> readLabelled(const std::filesystem::path &list, ListColumns columns)
{
    std::ifstream stream(list);
    std::vector<LabelledFrames> items;
    bool isFirst = true;
    for (std::string line; std::getline(stream, line); isFirst = false) {
        const auto fields = fieldsOf(line);
        if (isFirst && fieldOr(fields, columns.bin, "") == "bin") {
            const auto alternative = std::ranges::find(fields, "or");
            columns.alternative =
                alternative == fields.end() ? noColumn : static_cast<std::size_t>(alternative - fields.begin());
            continue;
        }
        LabelledFrames item;
        item.bin = binOfLabel(fieldOr(fields, columns.bin, ""));
        item.alternative = binOfLabel(fieldOr(fields, columns.alternative, ""));
        item.name = fieldOr(fields, columns.name, "");
        for (const auto column : columns.frames) {
            if (const auto path = fieldOr(fields, column, ""); !path.empty()) {
                item.frames.push_back(list.parent_path() / path);
            }
        }
        if (!item.bin.isEmpty() && !item.frames.empty()) {
            items.push_back(std::move(item));
        }
    }
    return items;
}

void fileAll(std::vector<LabelledFrames> &items, const VisionClassifier &classifier)
{
    std::atomic<std::size_t> next = 0;
    std::vector<std::jthread> workers;
    for (unsigned i = 0; i < std::max(1u, std::thread::hardware_concurrency()); ++i) {
        workers.emplace_back([&] {
            for (auto at = next++; at < items.size(); at = next++) {
                file(items[at], classifier);
            }
        });
    }
}

bool writeEach(const std::filesystem::path &file, const std::vector<LabelledFrames> &items)
{
    std::ofstream stream(file);
    for (const auto &item : items) {
        stream << item.name << '\t' << item.bin.toStdString() << '\t' << item.filed.toStdString() << '\t'
               << item.runnerUp.toStdString() << '\t' << item.confidence << '\t' << item.needsReview << '\n';
    }
    return static_cast<bool>(stream.flush());
}

int reportOnList(const std::vector<std::string> &arguments, const char *program, const ListColumns &columns,
                 const char *countKey)
{
    const bool writesEach = arguments.size() == 3 && arguments[1] == "--each";
    auto items =
        arguments.size() == 1 || writesEach ? readLabelled(arguments.front(), columns) : std::vector<LabelledFrames>();
    if (items.empty()) {
        std::cerr << "usage: " << program << " TSV [--each FILE]\n";
        return 2;
    }
    const auto models = VisionModels::load();
    if (!models) {
        std::cerr << program << ": " << models.error().file.string() << ": " << models.error().detail << '\n';
        return 1;
    }
    const VisionClassifier classifier(std::make_shared<const ModelRequests>(*models));
    const auto start = std::chrono::steady_clock::now();
    fileAll(items, classifier);
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
    if (writesEach && !writeEach(arguments[2], items)) {
        std::cerr << program << ": can't write " << arguments[2] << '\n';
        return 1;
    }
    std::size_t frames = 0;
    for (const auto &item : items) {
        frames += item.frames.size();
    }
    QJsonObject report = accuracyReport({items.begin(), items.end()});
    report[QLatin1String(countKey)] = static_cast<double>(items.size());
    report[QStringLiteral("framesPerSecond")] = static_cast<double>(frames) / seconds.count();
    std::cout << QJsonDocument(report).toJson(QJsonDocument::Compact).constData() << '\n';
    return 0;
}

} // namespace larkspan::bench
