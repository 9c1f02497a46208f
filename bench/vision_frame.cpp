// vision_frame [PICTURE] [--rounds N]: what one frame costs on one core, each network by itself and all that a frame
// goes through. Without a picture it looks at a made one in which nobody stands, so pose and face are timed apart.
#include <algorithm>
#include <chrono>
#include <iostream>
#include <thread>

#include <QtCore/QCommandLineParser>
#include <QtCore/QCoreApplication>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include "classify/vision/ModelRequests.h"

using namespace larkspan;

namespace {

QImage madeFrame()
{
    QImage image(448, 252, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            image.setPixel(x, y, qRgb((x * 7 + y) % 256, (x * y / 16) % 256, (x / 3 + y * 5) % 256));
        }
    }
    return image;
}

double milliseconds(std::chrono::steady_clock::duration duration)
{
    return std::chrono::duration<double, std::milli>(duration).count();
}

QJsonObject timesOf(int rounds, const std::function<bool()> &work)
{
    std::vector<double> times;
    for (int i = 0; i < rounds; ++i) {
        const auto start = std::chrono::steady_clock::now();
        if (!work()) {
            std::cerr << "vision_frame: the engine failed\n";
            std::exit(1);
        }
        times.push_back(milliseconds(std::chrono::steady_clock::now() - start));
    }
    std::ranges::sort(times);
    return {{QStringLiteral("median"), times[times.size() / 2]},
            {QStringLiteral("p90"), times[times.size() * 9 / 10]},
            {QStringLiteral("least"), times.front()}};
}

// Frames a second when every core works on frames of its own.
double framesPerSecond(const ModelRequests &requests, const QImage &frame, int rounds, unsigned threads)
{
    const auto start = std::chrono::steady_clock::now();
    {
        std::vector<std::jthread> workers;
        for (unsigned i = 0; i < threads; ++i) {
            workers.emplace_back([&] {
                for (int round = 0; round < rounds; ++round) {
                    static_cast<void>(requests.perform({&frame, 1}));
                }
            });
        }
    }
    return 1000.0 * rounds * threads / milliseconds(std::chrono::steady_clock::now() - start);
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    const QCommandLineOption roundsOption(QStringLiteral("rounds"), QStringLiteral("How often each is timed."),
                                          QStringLiteral("N"), QStringLiteral("50"));
    parser.addOption(roundsOption);
    parser.addHelpOption();
    parser.process(application);
    const int rounds = std::max(1, parser.value(roundsOption).toInt());
    const auto files = parser.positionalArguments();
    const auto frame = files.isEmpty()
                           ? madeFrame()
                           : QImage(files.front()).scaled(448, 448, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    if (frame.isNull()) {
        std::cerr << "vision_frame: can't read " << files.front().toStdString() << '\n';
        return 1;
    }

    const auto start = std::chrono::steady_clock::now();
    const auto models = VisionModels::load();
    if (!models) {
        std::cerr << "vision_frame: " << models.error().file.string() << ": " << models.error().detail << '\n';
        return 1;
    }
    const double loading = milliseconds(std::chrono::steady_clock::now() - start);

    const auto &nets = **models;
    const ModelRequests requests(*models);
    const QRectF whole(0, 0, 1, 1);
    const std::vector<float> objects(ObjectDetector::featureCount, 1.0f);
    const std::vector<float> scene(SceneNetwork::featureCount, 1.0f);
    const QJsonObject each{
        {QStringLiteral("objects"), timesOf(rounds, [&] { return nets.objects().detect(frame).has_value(); })},
        {QStringLiteral("scene"), timesOf(rounds, [&] { return nets.scene().featuresOf(frame).has_value(); })},
        {QStringLiteral("pose"), timesOf(rounds, [&] { return nets.pose().read(frame, whole).has_value(); })},
        {QStringLiteral("face"), timesOf(rounds, [&] { return nets.face().detect(frame, 0.5f).has_value(); })},
        {QStringLiteral("rooms"), timesOf(rounds, [&] { return nets.rooms().hear(objects, scene).has_value(); })},
        {QStringLiteral("frame"), timesOf(rounds,
                                          [&] {
                                              return requests.perform({&frame, 1}).front().has_value();
                                          })},
    };
    const unsigned cores = std::max(1u, std::thread::hardware_concurrency());
    const QJsonObject result{
        {QStringLiteral("frame"), QStringLiteral("%1x%2").arg(frame.width()).arg(frame.height())},
        {QStringLiteral("loadMilliseconds"), loading},
        {QStringLiteral("milliseconds"), each},
        {QStringLiteral("threads"), static_cast<int>(cores)},
        {QStringLiteral("framesPerSecond"), framesPerSecond(requests, frame, rounds, cores)},
    };
    std::cout << QJsonDocument(result).toJson(QJsonDocument::Compact).constData() << '\n';
}
