#pragma once

#include <algorithm>
#include <vector>

#include "core/clips/MediaClip.h"

namespace larkspan {

// By the time they were taken. Clips of one date are equal: sort stably, so that file order decides between them.
inline bool isEarlier(const ClipPtr &a, const ClipPtr &b)
{
    return a->creationDate < b->creationDate;
}

inline void sortByDate(std::vector<ClipPtr> &clips)
{
    std::stable_sort(clips.begin(), clips.end(), isEarlier);
}

} // namespace larkspan
