#include "core/engine/FootageSearch.h"

#include <algorithm>
#include <set>

namespace larkspan {

namespace {

// A file that holds no date has that of the file system, which a move may change by the length of the shot or the time
// that it was copied in.
constexpr std::chrono::hours oneDay{24};

bool isSameFootage(const MediaClip &clip, const MediaClip &file)
{
    return clip.duration == file.duration && clip.naturalSize == file.naturalSize &&
           clip.displaySize == file.displaySize && clip.frameDurationValue == file.frameDurationValue &&
           clip.frameDurationScale == file.frameDurationScale && clip.cameraModel == file.cameraModel &&
           std::chrono::abs(clip.creationDate - file.creationDate) < oneDay;
}

// The clip's own bin first.
std::vector<QString> binsToLookInto(const MediaClip &clip, const std::set<QString> &allBins)
{
    std::vector<QString> bins{clip.primaryBin};
    std::ranges::copy_if(allBins, std::back_inserter(bins), [&clip](const QString &b) { return b != clip.primaryBin; });
    return bins;
}

} // namespace

std::vector<std::optional<FileUrl>> findMovedFootage(std::span<const ClipPtr> clips, std::span<const FileUrl> roots,
                                                     const SortSeams &seams, const std::stop_token &stop)
{
    std::set<QString> allBins;
    std::set<std::filesystem::path> taken;
    std::vector<bool> isGone(clips.size());
    for (std::size_t i = 0; i < clips.size() && !stop.stop_requested(); ++i) {
        allBins.insert(clips[i]->primaryBin);
        isGone[i] = clips[i]->isFootageGone();
        if (!isGone[i]) {
            taken.insert(clips[i]->footageURL().path());
        }
    }
    const auto find = [&](const MediaClip &clip) -> std::optional<FileUrl> {
        for (const FileUrl &root : roots) {
            for (const QString &bin : binsToLookInto(clip, allBins)) {
                for (const FileUrl &place : seams.placesInBin(clip.url, root, bin)) {
                    if (!taken.contains(place.path()) && isSameFootage(clip, *seams.probeClip(place))) {
                        taken.insert(place.path());
                        return place;
                    }
                }
            }
        }
        return std::nullopt;
    };

    std::vector<std::optional<FileUrl>> found(clips.size());
    for (std::size_t i = 0; i < clips.size() && !stop.stop_requested(); ++i) {
        const bool isKnown = clips[i]->duration > 0.0 && !clips[i]->naturalSize.isEmpty();
        if (isKnown && isGone[i]) {
            found[i] = find(*clips[i]);
        }
    }
    return found;
}

} // namespace larkspan
