// sort_shoot FOLDER [--event FILE] [--export FORMAT FILE]…: the real engine on a folder, without a window: where each
// clip went and where the time did. With a truth.tsv in the folder (file, bin; apart by a tab) also how right that was.
#include <chrono>
#include <fstream>
#include <iostream>
#include <map>
#include <mutex>

#include <QtCore/QCommandLineParser>
#include <QtCore/QCoreApplication>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include "bench/Accuracy.h"
#include "bench/Memory.h"
#include "classify/media/ClipProbe.h"
#include "classify/media/FrameSampler.h"
#include "classify/vision/ModelRequests.h"
#include "classify/vision/VisionClassifier.h"
#include "core/engine/SortEngine.h"
#include "core/files/AtomicFile.h"
#include "output/FCPXMLWriter.h"
#include "output/Handoff.h"

using namespace larkspan;
using namespace larkspan::bench;
using namespace Qt::Literals::StringLiterals;

namespace {

struct Milliseconds
{
    double probe = 0.0;
    double sample = 0.0;
    double classify = 0.0;
};

template <typename Work>
auto timed(double &milliseconds, Work work)
{
    const auto start = std::chrono::steady_clock::now();
    auto result = work();
    milliseconds = std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
    return result;
}

// The cost of each clip, by file. Written from the clips' threads.
class Ledger
{
public:
    void add(const FileUrl &url, double Milliseconds::*step, double milliseconds)
    {
        const std::lock_guard lock(m_mutex);
        m_clips[url.path().native()].*step += milliseconds;
    }
    Milliseconds of(const FileUrl &url) const
    {
        const auto clip = m_clips.find(url.path().native());
        return clip == m_clips.end() ? Milliseconds() : clip->second;
    }

private:
    std::mutex m_mutex;
    std::map<std::string, Milliseconds> m_clips;
};

// A classifier isn't told whose frames it sees; the clip that its thread sampled last is the one.
thread_local FileUrl sampledLast;

class TimedClassifier : public FrameClassifier
{
public:
    TimedClassifier(VisionClassifier inner, Ledger &ledger) : m_inner(std::move(inner)), m_ledger(ledger) {}

    FrameAnalysis analyze(std::span<const QImage> frames) const override
    {
        double milliseconds = 0.0;
        auto analysis = timed(milliseconds, [&] { return m_inner.analyze(frames); });
        m_ledger.add(sampledLast, &Milliseconds::classify, milliseconds);
        return analysis;
    }

private:
    VisionClassifier m_inner;
    Ledger &m_ledger;
};

SortSeams timedSeams(std::shared_ptr<const VisionRequests> requests, Ledger &ledger)
{
    return {
        .probeClip =
            [&ledger](const FileUrl &url) {
                double milliseconds = 0.0;
                auto clip = timed(milliseconds, [&] { return probeClip(url); });
                ledger.add(url, &Milliseconds::probe, milliseconds);
                return clip;
            },
        .sampleFrames =
            [&ledger](const MediaClip &clip, int count, double maxDimension) {
                double milliseconds = 0.0;
                auto frames = timed(milliseconds, [&] { return sampleFrames(clip, count, maxDimension); });
                ledger.add(clip.url, &Milliseconds::sample, milliseconds);
                sampledLast = clip.url;
                return frames;
            },
        .makeLocalClassifier =
            [requests, &ledger] { return std::make_shared<TimedClassifier>(VisionClassifier(requests), ledger); },
    };
}

std::map<QString, QString> readTruth(const std::filesystem::path &folder)
{
    std::map<QString, QString> truth;
    std::ifstream stream(folder / "truth.tsv");
    for (std::string line; std::getline(stream, line);) {
        const QStringList fields = QString::fromStdString(line).split(u'\t');
        if (fields.size() >= 2) {
            truth[fields[0]] = binOfLabel(fields[1].toStdString());
        }
    }
    return truth;
}

QJsonObject clipReport(const MediaClip &clip, const Milliseconds &cost)
{
    QJsonArray extras;
    for (const QString &bin : clip.extraBins) {
        extras.append(bin);
    }
    return {{u"file"_s, clip.url.lastPathComponent()},
            {u"primaryBin"_s, clip.primaryBin},
            {u"extraBins"_s, extras},
            {u"confidence"_s, clip.confidence},
            {u"runnerUp"_s, clip.runnerUp},
            {u"needsReview"_s, clip.needsReview},
            {u"reviewReason"_s, clip.reviewReason},
            {u"milliseconds"_s,
             QJsonObject{{u"probe"_s, cost.probe}, {u"sample"_s, cost.sample}, {u"classify"_s, cost.classify}}}};
}

QJsonObject modelReport(const VisionTimings::Sum &sum)
{
    const double milliseconds = static_cast<double>(sum.nanoseconds) / 1e6;
    return {{u"runs"_s, static_cast<double>(sum.runs)}, {u"milliseconds"_s, milliseconds}};
}

// One file to write beside the event.
struct Handoff
{
    HandoffFormat format;
    std::filesystem::path file;
};

// Takes every "--export FORMAT FILE" out of the arguments: Qt's parser knows no options with two values. None if one
// isn't whole.
std::optional<std::vector<Handoff>> takeExports(QStringList &arguments)
{
    std::vector<Handoff> exports;
    for (qsizetype at = 0; (at = arguments.indexOf(u"--export"_s)) >= 0;) {
        const auto format = handoffFromRawValue(arguments.value(at + 1));
        if (!format || arguments.value(at + 2).isEmpty()) {
            return std::nullopt;
        }
        exports.push_back({*format, arguments.value(at + 2).toStdString()});
        arguments.remove(at, 3);
    }
    return exports;
}

bool write(const std::filesystem::path &file, const QByteArray &text)
{
    const auto written =
        writeFileAtomically(file, std::string_view(text.constData(), static_cast<std::size_t>(text.size())));
    if (!written) {
        std::cerr << "sort_shoot: " << file.string() << ": " << written.error().message() << '\n';
    }
    return written.has_value();
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QCommandLineParser arguments;
    arguments.addPositionalArgument(u"folder"_s, u"the shoot"_s);
    arguments.addOption({u"event"_s, u"where to write the event"_s, u"file"_s});
    arguments.addOption({u"export"_s,
                         u"the shoot for another program, as often as wanted, in the format kdenlive, "
                         "fcpxml-timeline, otio, fcpxml-timecode or csv"_s,
                         u"format> <file"_s});
    arguments.addHelpOption();
    QStringList given = QCoreApplication::arguments();
    const auto exports = takeExports(given);
    arguments.process(given);
    if (!exports || arguments.positionalArguments().size() != 1) {
        arguments.showHelp(2);
    }
    const std::filesystem::path folder = arguments.positionalArguments().front().toStdString();

    const auto models = VisionModels::load();
    if (!models) {
        std::cerr << "sort_shoot: " << models.error().file.string() << ": " << models.error().detail << '\n';
        return 1;
    }
    VisionTimings timings;
    Ledger ledger;
    SortEngine engine(timedSeams(std::make_shared<const ModelRequests>(*models, &timings), ledger));
    QObject::connect(&engine, &SortEngine::stageChanged, &application, [&engine] {
        if (engine.stage().kind != SortEngine::StageKind::working) {
            QCoreApplication::quit();
        }
    });
    const auto start = std::chrono::steady_clock::now();
    QMetaObject::invokeMethod(
        &engine, [&] { engine.sortFolder(FileUrl(folder)); }, Qt::QueuedConnection);
    QCoreApplication::exec();
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    if (engine.stage().kind != SortEngine::StageKind::results) {
        std::cerr << "sort_shoot: no video files in " << folder << '\n';
        return 1;
    }

    const auto truth = readTruth(folder);
    std::vector<Filed> filed;
    QJsonArray clips;
    Milliseconds sum;
    for (const ClipPtr &clip : engine.clips()) {
        const Milliseconds cost = ledger.of(clip->url);
        sum.probe += cost.probe;
        sum.sample += cost.sample;
        sum.classify += cost.classify;
        clips.append(clipReport(*clip, cost));
        if (const auto known = truth.find(clip->url.lastPathComponent()); known != truth.end()) {
            filed.push_back({.bin = known->second,
                             .filed = clip->primaryBin,
                             .runnerUp = clip->runnerUp,
                             .confidence = clip->confidence,
                             .needsReview = clip->needsReview});
        }
    }
    QJsonObject report = filed.empty() ? QJsonObject() : accuracyReport(filed);
    report[u"clips"_s] = clips;
    report[u"seconds"_s] = seconds;
    report[u"clipsPerSecond"_s] = static_cast<double>(engine.clips().size()) / seconds;
    report[u"peakMegabytes"_s] = peakMegabytes();
    report[u"threadMilliseconds"_s] = QJsonObject{{u"probe"_s, sum.probe},
                                                  {u"sample"_s, sum.sample},
                                                  {u"classify"_s, sum.classify},
                                                  {u"objects"_s, modelReport(timings.objects)},
                                                  {u"scene"_s, modelReport(timings.scene)},
                                                  {u"pose"_s, modelReport(timings.pose)},
                                                  {u"face"_s, modelReport(timings.face)}};

    const QString name = FileUrl(folder).lastPathComponent();
    if (arguments.isSet(u"event"_s)) {
        const QString text = FCPXMLWriter::event(engine.clips(), name, std::nullopt);
        if (!write(arguments.value(u"event"_s).toStdString(), text.toUtf8())) {
            return 1;
        }
    }
    for (const Handoff &handoff : *exports) {
        if (!write(handoff.file, handoffText(handoff.format, engine.clips(), name))) {
            return 1;
        }
    }
    std::cout << QJsonDocument(report).toJson(QJsonDocument::Compact).constData() << '\n';
}
