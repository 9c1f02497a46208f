#include "core/bins/BinRules.h"

#include <algorithm>
#include <array>
#include <numeric>

#include "core/base/Decimals.h"
#include "core/bins/RoomLabel.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

constexpr double evidenceFloor = 0.0001;
constexpr double personByArea = 0.03;
constexpr double leastPersonArea = 0.006;
constexpr int framesForUnconfirmedPerson = 2;
constexpr double personScoreFactor = 8.0;
constexpr double leastPersonScore = 0.6;
constexpr double roomBesideShot = 0.25; // of all evidence
constexpr double hallwayYield = 0.65;   // of the hallway's score
constexpr double openPlanAgainstTop = 0.7;
constexpr double openPlanAgainstTotal = 0.14;
constexpr std::size_t mostSecondaries = 2;
constexpr double littleToGoOn = 0.18;
constexpr double tornLead = 0.04;

enum class ShotKind { drone, person, room };

struct RankedBin
{
    QString bin;
    double score = 0.0;
};

ShotKind shotKind(const FrameAnalysis &analysis, bool drone)
{
    if (drone) {
        return ShotKind::drone;
    }
    const bool largeEnough = analysis.humanFraction >= personByArea;
    const bool vouchedFor = analysis.humanFraction >= leastPersonArea &&
                            (analysis.humanConfirmed || analysis.framesWithHuman >= framesForUnconfirmedPerson);
    return largeEnough || vouchedFor ? ShotKind::person : ShotKind::room;
}

// The rooms by score, best first; equal scores in the order of their names.
std::vector<RankedBin> rankedRooms(const FrameAnalysis &analysis)
{
    std::vector<RankedBin> ranked;
    for (const auto &[bin, score] : analysis.scores) {
        if (!RoomLabel::exclusiveBins().contains(bin)) {
            ranked.push_back({bin, score});
        }
    }
    std::stable_sort(ranked.begin(), ranked.end(),
                     [](const RankedBin &a, const RankedBin &b) { return a.score > b.score; });
    return ranked;
}

double totalEvidence(const FrameAnalysis &analysis)
{
    const double sum = std::accumulate(analysis.scores.begin(), analysis.scores.end(), 0.0,
                                       [](double soFar, const auto &entry) { return soFar + entry.second; });
    return std::max(sum, evidenceFloor);
}

// A shot through a doorway belongs to the room that it looks into.
void fileRoom(Classification &result, const std::vector<RankedBin> &ranked, double total, const SortOptions &options)
{
    const RankedBin &top = ranked.front();
    RankedBin primary = top;
    if (top.bin == u"Hallway / Stairs"_s) {
        const auto room = std::find_if(ranked.begin() + 1, ranked.end(), [&top](const RankedBin &candidate) {
            return candidate.score >= hallwayYield * top.score;
        });
        if (room != ranked.end()) {
            primary = *room;
            result.secondaries.push_back(top.bin);
        }
    }
    result.primary = primary.bin;
    result.score = primary.score / total;

    if (!options.tagOpenPlanTwice) {
        return;
    }
    const double bar = std::max(openPlanAgainstTop * top.score, openPlanAgainstTotal * total);
    for (const RankedBin &candidate : ranked) {
        if (result.secondaries.size() >= mostSecondaries) {
            break;
        }
        const bool isFiled =
            candidate.bin == result.primary ||
            std::find(result.secondaries.begin(), result.secondaries.end(), candidate.bin) != result.secondaries.end();
        if (!isFiled && candidate.score >= bar) {
            result.secondaries.push_back(candidate.bin);
        }
    }
}

// Names the strongest room that the clip isn't filed under.
void nameRunnerUp(Classification &result, const std::vector<RankedBin> &ranked, double total)
{
    const auto rival = std::find_if(ranked.begin(), ranked.end(),
                                    [&result](const RankedBin &candidate) { return candidate.bin != result.primary; });
    if (rival != ranked.end()) {
        result.runnerUp = rival->bin;
        result.runnerUpScore = rival->score / total;
    }
}

QString twoDecimals(double value)
{
    return withDecimals(value, 2);
}

} // namespace

Classification classification(const FrameAnalysis &analysis, const MediaClip &clip, const SortOptions &options)
{
    const double total = totalEvidence(analysis);
    const std::vector<RankedBin> ranked = rankedRooms(analysis);

    Classification result;
    result.raw = analysis.raw;
    const auto tagTopRoom = [&] {
        if (!ranked.empty() && ranked.front().score / total >= roomBesideShot) {
            result.secondaries.push_back(ranked.front().bin);
        }
    };

    switch (shotKind(analysis, isDroneClip(clip.url.lastPathComponent(), clip.cameraModel))) {
    case ShotKind::drone:
        result.primary = u"Aerial / Drone"_s;
        result.score = 1.0;
        if (!options.keepDroneExclusive) {
            tagTopRoom();
        }
        break;
    case ShotKind::person:
        result.primary = u"Agent / Talent"_s;
        result.score = std::clamp(analysis.humanFraction * personScoreFactor, leastPersonScore, 1.0);
        tagTopRoom();
        break;
    case ShotKind::room:
        // Not "score <= 0": evidence that is no number is no evidence.
        if (ranked.empty() || !(ranked.front().score > 0.0)) {
            result.primary = unsortedBin();
            return result;
        }
        fileRoom(result, ranked, total, options);
        break;
    }

    nameRunnerUp(result, ranked, total);
    return result;
}

bool isDroneClip(const QString &fileName, const QString &cameraModel)
{
    static const std::array marks{u"DJI_"_s, u"MAVIC"_s,  u"INSPIRE"_s, u"AVATA"_s, u"NEO_"_s,
                                  u"FPV"_s,  u"SKYDIO"_s, u"AUTEL"_s,   u"EVO"_s};
    const QString text = (fileName + u' ' + cameraModel).toUpper();
    return std::any_of(marks.begin(), marks.end(), [&text](const QString &mark) { return text.contains(mark); });
}

void applyReviewFlags(MediaClip &clip, const SortOptions &options)
{
    if (!options.sendUnsureToReview || RoomLabel::exclusiveBins().contains(clip.primaryBin)) {
        return;
    }
    if (clip.primaryBin == unsortedBin()) {
        clip.needsReview = true;
        if (clip.reviewReason.isEmpty()) {
            clip.reviewReason = u"no room read from the frames"_s;
        }
        return;
    }
    if (clip.confidence < littleToGoOn) {
        clip.needsReview = true;
        clip.reviewReason = u"little to go on — %1 confidence"_s.arg(twoDecimals(clip.confidence));
        return;
    }
    const bool rivalIsTagged =
        std::find(clip.extraBins.begin(), clip.extraBins.end(), clip.runnerUp) != clip.extraBins.end();
    if (clip.runnerUp.isEmpty() || rivalIsTagged) {
        return;
    }
    if (clip.confidence - clip.runnerUpScore < tornLead) {
        clip.needsReview = true;
        clip.reviewReason = u"torn between %1 and %2 — %3 vs %4"_s.arg(
            clip.primaryBin, clip.runnerUp, twoDecimals(clip.confidence), twoDecimals(clip.runnerUpScore));
    }
}

} // namespace larkspan
