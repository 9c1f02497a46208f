#include "output/StringOut.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <tuple>

#include "core/bins/RoomLabel.h"
#include "output/EventOrder.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

constexpr double largestSide = 16'384;

// A place in the tour: the bin's stop, its name, and the number of a numbered room.
struct Stop
{
    std::size_t rank = 0;
    QString bin;
    qlonglong room = 0;
};

bool comesBefore(const Stop &a, const Stop &b)
{
    if (a.rank != b.rank) {
        return a.rank < b.rank;
    }
    return a.bin == b.bin ? a.room < b.room : codePointsLess(a.bin, b.bin);
}

// Bins that no tour has a place for come after the rooms, before the garden.
constexpr std::array tourBeforeOthers{"Exterior Front"_L1,    "Entry / Courtyard"_L1,
                                      "Living Room"_L1,       "Dining Room"_L1,
                                      "Kitchen"_L1,           "Bedroom"_L1,
                                      "Bathroom"_L1,          "Office"_L1,
                                      "Laundry Room"_L1,      "Garage"_L1,
                                      "Hallway / Stairs"_L1,  "Closet"_L1,
                                      "Exterior Detail"_L1,   "Interior Detail"_L1,
                                      "Amenities / Other"_L1, "Agent / Talent"_L1};
constexpr std::array tourAfterOthers{"Unsorted"_L1, "Exterior Back"_L1, "Pool"_L1, "Aerial / Drone"_L1};

std::size_t rankOf(const QString &bin)
{
    const auto before = std::ranges::find(tourBeforeOthers, bin);
    if (before != tourBeforeOthers.end()) {
        return static_cast<std::size_t>(before - tourBeforeOthers.begin());
    }
    const auto after = std::ranges::find(tourAfterOthers, bin);
    return tourBeforeOthers.size() +
           (after == tourAfterOthers.end() ? 0 : 1 + static_cast<std::size_t>(after - tourAfterOthers.begin()));
}

Stop stopOf(const QString &bin)
{
    const qsizetype blank = bin.lastIndexOf(u' ');
    bool isNumber = false;
    const qlonglong room = bin.mid(blank + 1).toLongLong(&isNumber);
    const QString family = bin.left(std::max<qsizetype>(blank, 0));
    // Only a bin of the table is numbered; in any other name a number is part of it.
    const bool isNumbered = isNumber && RoomLabel::byName().contains(family);
    return {.rank = rankOf(isNumbered ? family : bin), .bin = isNumbered ? family : bin, .room = isNumbered ? room : 0};
}

bool hasPicture(const MediaClip &clip)
{
    const auto isSide = [](double side) { return side >= 1.0 && side <= largestSide; };
    return isSide(clip.displaySize.width()) && isSide(clip.displaySize.height());
}

bool hasLength(const MediaClip &clip)
{
    return std::isfinite(clip.duration) && clip.duration > 0.0;
}

std::optional<FrameRate> rateOf(const MediaClip &clip)
{
    return clip.frameDurationValue > 0
               ? FrameRate::nearest(clip.frameDurationScale / static_cast<double>(clip.frameDurationValue))
               : std::nullopt;
}

int evenSide(double side)
{
    const int whole = static_cast<int>(std::lround(side));
    return whole + whole % 2;
}

// Wide enough for the product of any two numbers that a file has.
__extension__ using Wide = __int128;

} // namespace

QString filedBin(const MediaClip &clip)
{
    return clip.primaryBin.isEmpty() ? unsortedBin() : clip.primaryBin;
}

TimelineFormat mostCommonFormat(std::span<const ClipPtr> clips)
{
    std::map<TimelineFormat, int> counts;
    int most = 0;
    const auto formatOf = [](const MediaClip &clip) {
        return TimelineFormat{.width = evenSide(clip.displaySize.width()),
                              .height = evenSide(clip.displaySize.height()),
                              .rate = rateOf(clip).value_or(TimelineFormat().rate)};
    };
    for (const ClipPtr &clip : clips) {
        if (hasPicture(*clip)) {
            most = std::max(most, ++counts[formatOf(*clip)]);
        }
    }
    const auto winner = std::ranges::find_if(
        clips, [&](const ClipPtr &clip) { return hasPicture(*clip) && counts[formatOf(*clip)] == most; });
    return winner == clips.end() ? TimelineFormat() : formatOf(**winner);
}

std::int64_t framesOn(const MediaClip &clip, FrameRate rate)
{
    const Wide frames =
        Wide(clip.durationTicks()) * rate.scale() / (Wide(std::max(clip.frameDurationScale, 1)) * rate.value());
    // A week at 1000 frames a second: a broken header may claim more, which no editor could open.
    constexpr std::int64_t longest = 7LL * 86'400 * 1000;
    return static_cast<std::int64_t>(std::clamp<Wide>(frames, 1, longest));
}

std::vector<ClipPtr> inTourOrder(std::span<const ClipPtr> clips)
{
    std::map<QString, Stop> stops;
    for (const ClipPtr &clip : clips) {
        stops.try_emplace(filedBin(*clip), stopOf(filedBin(*clip)));
    }
    std::vector<ClipPtr> sorted(clips.begin(), clips.end());
    std::ranges::stable_sort(sorted, [&stops](const ClipPtr &a, const ClipPtr &b) {
        const QString binA = filedBin(*a);
        const QString binB = filedBin(*b);
        return binA == binB ? a->creationDate < b->creationDate : comesBefore(stops.at(binA), stops.at(binB));
    });
    return sorted;
}

StringOut StringOut::of(std::span<const ClipPtr> clips)
{
    StringOut result{.format = mostCommonFormat(clips), .clips = {}, .length = 0};
    QString bin;
    for (const ClipPtr &clip : inTourOrder(clips)) {
        if (!hasPicture(*clip) || !hasLength(*clip)) {
            continue;
        }
        const bool opensBin = result.clips.empty() || filedBin(*clip) != bin;
        bin = filedBin(*clip);
        result.clips.push_back({.clip = clip,
                                .rate = rateOf(*clip).value_or(result.format.rate),
                                .start = result.length,
                                .length = framesOn(*clip, result.format.rate),
                                .opensBin = opensBin});
        result.length += result.clips.back().length;
    }
    return result;
}

} // namespace larkspan
