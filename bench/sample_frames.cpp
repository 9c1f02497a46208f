// sample_frames FILE…: four frames of each file, against four runs of the ffmpeg program at the same times.
// The median of five after one unmeasured run, so that both sides find the file in the page cache.
#include <algorithm>
#include <array>
#include <chrono>
#include <iostream>

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QProcess>

#include "classify/media/ClipProbe.h"
#include "classify/media/FrameSampler.h"

using namespace larkspan;
using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int frameCount = 4;
constexpr double maxDimension = 448;

template <typename Work>
double millisecondsOf(Work work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

template <typename Work>
double medianMilliseconds(Work work)
{
    work();
    std::array<double, 5> taken{};
    std::ranges::generate(taken, [&] { return millisecondsOf(work); });
    std::ranges::sort(taken);
    return taken[taken.size() / 2];
}

// One process a frame. Negative if the program can't read the file either.
double referenceMilliseconds(const QString &path, const std::vector<double> &times)
{
    bool worked = true;
    const double taken = millisecondsOf([&] {
        for (const double time : times) {
            const int code =
                QProcess::execute(u"ffmpeg"_s, {u"-nostdin"_s, u"-loglevel"_s, u"quiet"_s, u"-y"_s, u"-ss"_s,
                                                QString::number(time), u"-i"_s, path, u"-frames:v"_s, u"1"_s, u"-vf"_s,
                                                u"scale=448:-2"_s, u"-f"_s, u"rawvideo"_s, u"/dev/null"_s});
            worked = worked && code == 0;
        }
    });
    return worked ? taken : -1.0;
}

QJsonObject measured(const QString &path)
{
    const FileUrl url(path.toStdString());
    std::int64_t probeBytes = 0;
    std::int64_t sampleBytes = 0;
    ClipPtr clip;
    const double probe = medianMilliseconds([&] { clip = probeClipWithin(url, {}, &probeBytes); });
    Frames frames;
    const double sample =
        medianMilliseconds([&] { frames = sampleFramesWithin(*clip, frameCount, maxDimension, {}, &sampleBytes); });
    const double reference = referenceMilliseconds(path, sampleTimes(clip->duration, frameCount));
    const auto bytes = static_cast<double>(probeBytes + sampleBytes);
    return {
        {u"file"_s, path},
        {u"frames"_s, static_cast<int>(frames.size())},
        {u"milliseconds"_s, sample},
        {u"probeMilliseconds"_s, probe},
        {u"bytesRead"_s, bytes},
        {u"shareRead"_s, bytes / std::max(1.0, static_cast<double>(QFileInfo(path).size()))},
        {u"referenceMilliseconds"_s, reference},
        {u"ratio"_s, reference / sample},
    };
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList paths = application.arguments().mid(1);
    if (paths.isEmpty()) {
        std::cerr << "usage: sample_frames FILE…\n";
        return 2;
    }
    QJsonArray files;
    std::ranges::for_each(paths, [&](const QString &path) { files.append(measured(path)); });
    std::cout << QJsonDocument(QJsonObject{{u"files"_s, files}}).toJson(QJsonDocument::Compact).toStdString() << '\n';
}
