// cloud_sort FOLDER [--rounds N]: what the cloud tier adds to a sort. The folder is sorted locally, with a model on
// this machine that takes 300 ms to answer, and with an endpoint that refuses at once; in turns, and the median of each
// counts. "ratio" is what the sort with the model costs without the time that the answers alone take, over the local
// sort; "refusedRatio" is the other over the local sort.
#include <algorithm>
#include <chrono>
#include <iostream>

#include <QtCore/QCommandLineParser>
#include <QtCore/QCoreApplication>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtNetwork/QTcpServer>

#include "classify/cloud/CloudClassifier.h"
#include "classify/cloud/HttpClient.h"
#include "classify/media/ClipProbe.h"
#include "classify/media/FrameSampler.h"
#include "classify/vision/ModelRequests.h"
#include "classify/vision/VisionClassifier.h"
#include "core/engine/SortEngine.h"
#include "tests/support/HttpServer.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace {

constexpr std::chrono::milliseconds thinkingTime{300};

SortSeams realSeams(std::shared_ptr<const VisionRequests> requests)
{
    return {
        .probeClip = probeClip,
        .sampleFrames = sampleFrames,
        .makeLocalClassifier = [requests] { return std::make_shared<VisionClassifier>(requests); },
        .awaitCloudKey = [](const std::stop_token &) { return QString(); },
        .makeCloudClassifier =
            [client = std::make_shared<const HttpClient>()](const CloudSettings &settings,
                                                            std::shared_ptr<const FrameClassifier> local) {
                return std::make_shared<const CloudClassifier>(settings, std::move(local), client);
            },
    };
}

// Seconds that one sort of the folder takes; without an endpoint it stays on this machine.
double sortOnce(SortEngine &engine, const std::filesystem::path &folder, const QString &endpoint)
{
    engine.setModelTier(endpoint.isEmpty() ? ModelTier::local : ModelTier::cloud);
    engine.setCloudSettings({.endpoint = endpoint, .apiKey = u"key"_s});
    const auto start = std::chrono::steady_clock::now();
    engine.sortFolder(FileUrl(folder));
    while (engine.stage().kind == SortEngine::StageKind::working) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double median(std::vector<double> values)
{
    std::ranges::sort(values);
    return values[values.size() / 2];
}

// An address where nobody listens.
QString refusingEndpoint()
{
    QTcpServer nobody;
    nobody.listen(QHostAddress::LocalHost);
    return u"http://127.0.0.1:%1/v1/messages"_s.arg(nobody.serverPort());
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QCommandLineParser arguments;
    arguments.addPositionalArgument(u"folder"_s, u"the shoot"_s);
    arguments.addOption({u"rounds"_s, u"how often each sort is timed"_s, u"number"_s, u"3"_s});
    arguments.addHelpOption();
    arguments.process(application);
    const int rounds = arguments.value(u"rounds"_s).toInt();
    if (arguments.positionalArguments().size() != 1 || rounds < 1) {
        arguments.showHelp(2);
    }
    const std::filesystem::path folder = arguments.positionalArguments().front().toStdString();
    const auto models = VisionModels::load();
    if (!models) {
        std::cerr << "cloud_sort: " << models.error().file.string() << ": " << models.error().detail << '\n';
        return 1;
    }

    auto thoughtful = HttpServer::respond(
        200, R"({"content":[{"type":"text","text":"{\"primary\":\"Kitchen\",\"note\":\"wide shot\"}"}]})");
    thoughtful.delay = thinkingTime;
    const HttpServer model([&thoughtful](const HttpServer::Request &) { return thoughtful; });
    SortEngine engine(realSeams(std::make_shared<const ModelRequests>(*models)));
    (void)sortOnce(engine, folder, {}); // warms the page cache up
    if (engine.stage().kind != SortEngine::StageKind::results) {
        std::cerr << "cloud_sort: no video files in " << folder << '\n';
        return 1;
    }
    std::vector<double> local;
    std::vector<double> cloud;
    std::vector<double> refused;
    const QString nobody = refusingEndpoint();
    for (int round = 0; round < rounds; ++round) {
        local.push_back(sortOnce(engine, folder, {}));
        cloud.push_back(sortOnce(engine, folder, model.url()));
        refused.push_back(sortOnce(engine, folder, nobody));
    }

    const auto clips = static_cast<double>(engine.clips().size());
    const double answering = std::chrono::duration<double>(thinkingTime).count() * clips / engine.width();
    const QJsonObject report{{u"clips"_s, clips},
                             {u"width"_s, engine.width()},
                             {u"localSeconds"_s, median(local)},
                             {u"cloudSeconds"_s, median(cloud)},
                             {u"refusedSeconds"_s, median(refused)},
                             {u"answeringSeconds"_s, answering},
                             {u"ratio"_s, (median(cloud) - answering) / median(local)},
                             {u"refusedRatio"_s, median(refused) / median(local)},
                             {u"requestsPerSort"_s, static_cast<double>(model.requests().size()) / rounds},
                             {u"connections"_s, model.connections()}};
    std::cout << QJsonDocument(report).toJson(QJsonDocument::Compact).constData() << '\n';
}
