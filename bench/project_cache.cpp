// project_cache N: a shoot of N made-up clips through the real engine and cache: what an edit costs the main thread
// while the files are written, what the writing itself takes, and how long opening takes until the results show.
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <iostream>
#include <string>
#include <vector>

#include <QtCore/QCoreApplication>
#include <QtCore/QTemporaryDir>

#include "core/bins/RoomLabel.h"
#include "core/engine/SortEngine.h"
#include "core/engine/SortSeams.h"

using namespace larkspan;

namespace {

constexpr int edits = 300;
constexpr int rounds = 9;

CachedProject madeUpProject(int count)
{
    const FileUrl folder("/Volumes/CARD/Smith & Co");
    CachedProject project{
        .summary = {
            .id = projectID(folder), .name = folder.lastPathComponent(), .folderPath = folder, .clipCount = count}};
    const auto &bins = RoomLabel::all();
    for (int i = 0; i < count; ++i) {
        const auto bin = [&](int step) {
            return bins[static_cast<std::size_t>(i) * static_cast<std::size_t>(step) % bins.size()].name;
        };
        const QString name = QStringLiteral("DCIM/100 MEDIA/A %1.MOV").arg(i, 6, 10, QLatin1Char('0'));
        project.clips.push_back({.path = folder.appending(name),
                                 .duration = 5.0 + i % 17 + 1.0 / (1 + i),
                                 .naturalW = 3840,
                                 .naturalH = 2160,
                                 .displayW = 3840,
                                 .displayH = 2160,
                                 .creationDate = Date(std::chrono::seconds(1'780'000'000 + i * 7919LL % count)),
                                 .cameraModel = QStringLiteral("ILCE-7SM3"),
                                 .primaryBin = bin(7),
                                 .extraBins = {bin(3)},
                                 .confidence = 1.0 / (2 + i % 5),
                                 .runnerUp = bin(5),
                                 .runnerUpScore = 1.0 / (3 + i % 7),
                                 .needsReview = i % 10 == 0,
                                 .reviewReason = QStringLiteral("torn between Kitchen and Pool — 0.33 vs 0.30")});
    }
    return project;
}

// Milliseconds of a clock of the system.
double now(clockid_t clock)
{
    timespec time{};
    clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

// The times of the runs in milliseconds, ascending: by the clock on the wall, and as processor time of the calling
// thread, which other programs on the machine don't lengthen.
struct Times
{
    std::vector<double> wall;
    std::vector<double> cpu;
};

template <typename Work>
Times timesOf(int count, Work work)
{
    Times times;
    for (int i = 0; i < count; ++i) {
        const double wall = now(CLOCK_MONOTONIC);
        const double cpu = now(CLOCK_THREAD_CPUTIME_ID);
        work(i);
        times.cpu.push_back(now(CLOCK_THREAD_CPUTIME_ID) - cpu);
        times.wall.push_back(now(CLOCK_MONOTONIC) - wall);
    }
    std::ranges::sort(times.cpu);
    std::ranges::sort(times.wall);
    return times;
}

double at(const std::vector<double> &sorted, double share)
{
    return sorted[static_cast<std::size_t>(share * static_cast<double>(sorted.size() - 1))];
}

std::string spread(const std::vector<double> &sorted)
{
    return "{\"median\": " + std::to_string(at(sorted, 0.5)) + ", \"p99\": " + std::to_string(at(sorted, 0.99)) +
           ", \"worst\": " + std::to_string(sorted.back()) + "}";
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const int count = argc == 2 ? std::atoi(argv[1]) : 0;
    const QTemporaryDir folder;
    if (count <= 0 || !folder.isValid()) {
        std::cerr << "usage: project_cache N\n";
        return 2;
    }
    const std::filesystem::path path = folder.path().toStdString();
    const CachedProject project = madeUpProject(count);

    const ProjectFiles files(path);
    const auto writing = timesOf(rounds, [&](int) { files.save(project); });
    const auto bytes = std::filesystem::file_size(path / (project.summary.id.toStdString() + ".json"));

    ProjectCache cache(path);
    const SortSeams seams{.sampleFrames = [](const MediaClip &, int, double) { return Frames(); },
                          .placesInBin = [](const auto &...) { return std::vector<FileUrl>(); },
                          .projects = &cache};
    const auto opening = timesOf(rounds, [&](int) {
        SortEngine engine(seams);
        engine.openProject(project.summary.id);
    });

    SortEngine engine(seams);
    engine.openProject(project.summary.id);
    const auto editing = timesOf(edits, [&](int i) {
        engine.toggleExtraBin(engine.clips()[static_cast<std::size_t>(i % count)]->id, QStringLiteral("Garage"));
    });
    const auto flushing = timesOf(1, [&](int) { cache.flush(); });

    std::cout << "{\"clips\": " << count << ", \"editMilliseconds\": " << spread(editing.wall)
              << ", \"editProcessorMilliseconds\": " << spread(editing.cpu)
              << ", \"flushMilliseconds\": " << flushing.wall.back()
              << ", \"writeMilliseconds\": " << at(writing.wall, 0.5)
              << ", \"openMilliseconds\": " << at(opening.wall, 0.5) << ", \"bytes\": " << bytes << "}\n";
}
