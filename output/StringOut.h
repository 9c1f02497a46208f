#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "core/clips/MediaClip.h"

namespace larkspan {

// The picture that a timeline is cut in.
struct TimelineFormat
{
    int width = 1920; // pixels, even
    int height = 1080;
    FrameRate rate{.counted = 30, .isOver1001 = true};

    friend auto operator<=>(const TimelineFormat &, const TimelineFormat &) = default;
};

// One clip on the timeline, whole.
struct TimelineClip
{
    ClipPtr clip;
    FrameRate rate;          // the clip's own
    std::int64_t start = 0;  // frames of the timeline
    std::int64_t length = 1; // frames of the timeline, no longer than the clip
    bool opensBin = false;   // the first of its bin
};

// All clips of a shoot one after the other, in the order of a tour through the house: from the street through the rooms
// to the garden, and last from above.
struct StringOut
{
    TimelineFormat format; // the clips' most common size and rate
    std::vector<TimelineClip> clips;
    std::int64_t length = 0; // frames

    // Clips without a picture or a length are left out: there is nothing to play.
    static StringOut of(std::span<const ClipPtr> clips);
};

// The size and rate that most clips have, of several the earliest in the list; the default where no clip has a size.
[[nodiscard]] TimelineFormat mostCommonFormat(std::span<const ClipPtr> clips);

// The clips in the order of a tour, each bin's together in shooting order, numbered rooms by their numbers.
[[nodiscard]] std::vector<ClipPtr> inTourOrder(std::span<const ClipPtr> clips);

// Whole frames of a timeline that a clip fills, at least one and no more than it has.
[[nodiscard]] std::int64_t framesOn(const MediaClip &clip, FrameRate rate);

// The bin that a clip is filed in: "Unsorted" if it has none.
[[nodiscard]] QString filedBin(const MediaClip &clip);

} // namespace larkspan
