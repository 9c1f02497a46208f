#include "classify/cloud/CloudClassifier.h"

#include <algorithm>

#include <QtCore/QBuffer>

#include "classify/cloud/CloudRequest.h"
#include "classify/cloud/HttpClient.h"
#include "core/bins/RoomLabel.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

constexpr int jpegQuality = 60; // of 100
constexpr double primaryScore = 1.0;
constexpr double secondaryScore = 0.55;
// Just over the bar at which people decide a clip.
constexpr int leastFramesWithHuman = 2;
constexpr double leastHumanFraction = 0.006;

// Frames come small enough to be sent as they are. One that can't be encoded is left out.
std::vector<QByteArray> encoded(std::span<const QImage> frames)
{
    std::vector<QByteArray> images;
    for (const QImage &frame : frames) {
        QBuffer jpeg;
        jpeg.open(QIODevice::WriteOnly);
        if (frame.save(&jpeg, "JPEG", jpegQuality)) {
            images.push_back(jpeg.data().toBase64());
        }
    }
    return images;
}

// A verdict without people takes nothing away from what was seen locally.
void merge(const CloudVerdict &verdict, FrameAnalysis &analysis)
{
    std::map<QString, double> scores;
    const auto score = [&scores](const QString &bin, double value) {
        if (RoomLabel::byName().contains(bin)) {
            scores[bin] = value;
        }
    };
    score(verdict.primary, primaryScore);
    for (const QString &bin : verdict.secondary) {
        score(bin, secondaryScore);
    }
    if (!scores.empty()) {
        analysis.scores = std::move(scores);
        analysis.modelNote = verdict.note;
    }
    if (verdict.personVisible) {
        analysis.humanConfirmed = true;
        analysis.framesWithHuman = std::max(leastFramesWithHuman, analysis.framesWithHuman);
        analysis.humanFraction = std::max(leastHumanFraction, analysis.humanFraction);
    }
}

} // namespace

CloudClassifier::CloudClassifier(Settings settings, std::shared_ptr<const FrameClassifier> local,
                                 std::shared_ptr<const HttpClient> client)
    : m_settings(std::move(settings))
    , m_local(std::move(local))
    , m_client(std::move(client))
{}

FrameAnalysis CloudClassifier::analyze(std::span<const QImage> frames) const
{
    return analyzeUntilStopped(frames, {});
}

FrameAnalysis CloudClassifier::analyzeUntilStopped(std::span<const QImage> frames, const std::stop_token &stop) const
{
    FrameAnalysis analysis = m_local->analyzeUntilStopped(frames, stop);
    if (m_settings.apiKey.isEmpty() || frames.empty() || stop.stop_requested()) {
        return analysis;
    }
    const auto most = static_cast<std::size_t>(std::max(1, m_settings.maxFramesPerClip));
    const std::vector<QByteArray> images = encoded(frames.first(std::min(most, frames.size())));
    if (images.empty()) {
        return analysis;
    }
    auto verdict = requestVerdict(images, m_settings, *m_client, stop);
    if (verdict) {
        verdict->note = withoutKey(verdict->note, m_settings.apiKey);
        merge(*verdict, analysis);
    } else {
        analysis.modelNote = u"cloud: "_s + verdict.error().errorDescription();
    }
    return analysis;
}

} // namespace larkspan
