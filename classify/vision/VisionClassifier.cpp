#include "classify/vision/VisionClassifier.h"

#include <algorithm>

#include "core/bins/RoomLabel.h"

namespace larkspan {

namespace {

using BestConfidences = std::map<QString, double>;

// A person counts from here on, exclusively.
constexpr float minHumanConfidence = 0.35f;

// A clip keeps each identifier's best frame.
void keepBest(BestConfidences &best, const std::vector<ClassificationObservation> &observations, double lowest)
{
    for (const auto &observation : observations) {
        const double confidence = observation.confidence;
        if (confidence >= lowest) {
            auto &kept = best[observation.identifier.toLower()];
            kept = std::max(kept, confidence);
        }
    }
}

// An identifier that belongs to several bins gives each its share, so that no evidence counts twice.
std::map<QString, double> votes(const BestConfidences &best)
{
    std::map<QString, double> scores;
    const auto &binsByIdentifier = RoomLabel::binsByIdentifier();
    for (const auto &[identifier, confidence] : best) {
        const auto bins = binsByIdentifier.find(identifier);
        if (bins == binsByIdentifier.end()) {
            continue;
        }
        for (const auto &bin : bins->second) {
            scores[bin] += confidence / static_cast<double>(bins->second.size());
        }
    }
    return scores;
}

std::vector<RawIdentifier> strongest(const BestConfidences &best, int count)
{
    std::vector<RawIdentifier> raw(best.begin(), best.end());
    std::ranges::stable_sort(raw, std::ranges::greater(), &RawIdentifier::second);
    raw.resize(std::min(raw.size(), static_cast<std::size_t>(std::max(0, count))));
    return raw;
}

} // namespace

VisionClassifier::VisionClassifier(std::shared_ptr<const VisionRequests> requests, Settings settings)
    : m_requests(std::move(requests))
    , m_settings(settings)
{}

VisionClassifier::VisionClassifier(std::shared_ptr<const VisionRequests> requests)
    : VisionClassifier(std::move(requests), Settings())
{}

FrameAnalysis VisionClassifier::analyze(std::span<const QImage> frames) const
{
    FrameAnalysis analysis;
    BestConfidences best;
    for (const auto &found :
         m_requests ? m_requests->perform(frames) : std::vector<std::optional<FrameObservations>>()) {
        if (!found) {
            continue;
        }
        keepBest(best, found->classifications, m_settings.minIdentifierConfidence);
        bool sawPerson = false;
        for (const auto &human : found->humans) {
            if (human.confidence > minHumanConfidence) {
                const double area = human.boundingBox.width() * human.boundingBox.height();
                analysis.humanFraction = std::max(analysis.humanFraction, area);
                sawPerson = true;
            }
        }
        if (found->bodyPoses > 0 || found->faces > 0) {
            sawPerson = true;
            analysis.humanConfirmed = true;
        }
        if (sawPerson) {
            ++analysis.framesWithHuman;
        }
        if (!analysis.featurePrint) {
            analysis.featurePrint = found->featurePrint;
        }
    }
    analysis.scores = votes(best);
    analysis.raw = strongest(best, m_settings.rawKeepCount);
    return analysis;
}

std::vector<QString> VisionClassifier::supportedIdentifiers() const
{
    auto identifiers = m_requests ? m_requests->supportedIdentifiers() : std::vector<QString>();
    std::ranges::sort(identifiers);
    return identifiers;
}

} // namespace larkspan
