// long_run SHOOTS [--no-models]: works on so many shoots in a row, from the card to the reopened project, in one
// process with one engine, and says whether memory, threads and open files stay level: the last sixth of the shoots
// beside the second sixth, the first being the warm-up. Says how far it is every 50 shoots. Fails if they don't.
#include <algorithm>
#include <iostream>
#include <span>

#include <QtCore/QCommandLineParser>
#include <QtCore/QCoreApplication>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include "bench/LongRun.h"
#include "classify/vision/ModelRequests.h"
#include "classify/vision/VisionClassifier.h"

using namespace larkspan;
using namespace larkspan::bench;
using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int shootsPerLine = 50;
constexpr double mostGrowth = 1.05; // of memory, end over beginning

using Footprints = std::span<const Footprint>;

double medianMegabytes(Footprints footprints)
{
    std::vector<double> values;
    std::ranges::transform(footprints, std::back_inserter(values), &Footprint::megabytes);
    std::ranges::nth_element(values, values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2));
    return values[values.size() / 2];
}

int most(Footprints footprints, int Footprint::*what)
{
    return std::invoke(what, *std::ranges::max_element(footprints, {}, what));
}

// Kilobytes a shoot, by least squares.
double slope(Footprints footprints)
{
    const auto count = static_cast<double>(footprints.size());
    double up = 0.0;
    double across = 0.0;
    for (std::size_t i = 0; i < footprints.size(); ++i) {
        const double distance = static_cast<double>(i) - (count - 1.0) / 2.0;
        up += distance * footprints[i].megabytes * 1024.0;
        across += distance * distance;
    }
    return across > 0.0 ? up / across : 0.0;
}

QJsonObject report(Footprints all)
{
    const std::size_t sixth = all.size() / 6;
    const Footprints beginning = all.subspan(sixth, sixth);
    const Footprints end = all.last(sixth);
    const bool isLevel = medianMegabytes(end) <= medianMegabytes(beginning) * mostGrowth &&
                         most(end, &Footprint::threads) <= most(all.first(2 * sixth), &Footprint::threads) &&
                         most(end, &Footprint::openFiles) <= most(all.first(2 * sixth), &Footprint::openFiles);
    return {{u"shoots"_s, static_cast<qint64>(all.size())},
            {u"megabytesAtFirst"_s, medianMegabytes(beginning)},
            {u"megabytesAtLast"_s, medianMegabytes(end)},
            {u"kilobytesPerShoot"_s, slope(all.subspan(sixth))},
            {u"threadsAtFirst"_s, most(beginning, &Footprint::threads)},
            {u"threadsAtLast"_s, most(end, &Footprint::threads)},
            {u"openFilesAtFirst"_s, most(beginning, &Footprint::openFiles)},
            {u"openFilesAtLast"_s, most(end, &Footprint::openFiles)},
            {u"isLevel"_s, isLevel}};
}

// None, with a word on the error stream, if the models can't be loaded.
std::optional<LongRun::MakeClassifier> classifiers(bool withModels)
{
    std::shared_ptr<const ModelRequests> requests;
    if (withModels) {
        const auto models = VisionModels::load();
        if (!models) {
            std::cerr << "long_run: " << models.error().file.string() << ": " << models.error().detail << '\n';
            return std::nullopt;
        }
        requests = std::make_shared<const ModelRequests>(*models);
    }
    return [requests] { return std::make_shared<const VisionClassifier>(requests); };
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QCommandLineParser arguments;
    arguments.addPositionalArgument(u"shoots"_s, u"how many, at least 6"_s);
    arguments.addOption({u"no-models"_s, u"sort as a machine without the networks does"_s});
    arguments.addHelpOption();
    arguments.process(application);
    const int shoots = arguments.positionalArguments().value(0).toInt();
    if (shoots < 6) {
        arguments.showHelp(2);
    }
    const auto makeClassifier = classifiers(!arguments.isSet(u"no-models"_s));
    if (!makeClassifier) {
        return 1;
    }
    LongRun run(*makeClassifier);
    std::vector<Footprint> footprints;
    while (run.shoots() < shoots) {
        if (const std::string problem = run.shoot(); !problem.empty()) {
            std::cerr << "long_run: shoot " << run.shoots() << ": " << problem << '\n';
            return 1;
        }
        const Footprint now = footprints.emplace_back(Footprint::now());
        if (run.shoots() % shootsPerLine == 0) {
            std::cerr << run.shoots() << " shoots: " << now.megabytes << " MB, " << now.threads << " threads, "
                      << now.openFiles << " open files" << std::endl;
        }
    }
    const QJsonObject result = report(footprints);
    std::cout << QJsonDocument(result).toJson(QJsonDocument::Compact).constData() << '\n';
    return result[u"isLevel"_s].toBool() ? 0 : 1;
}
