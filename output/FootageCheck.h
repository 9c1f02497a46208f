#pragma once

#include <stop_token>

#include "core/files/FileUrl.h"

namespace larkspan {

// The answer to whether a volume looks like a camera's card, and the number of entries that were read for it.
struct FootageCheck
{
    bool looksLikeFootage = false;
    int entries = 0; // hidden ones don't count

    friend bool operator==(const FootageCheck &, const FootageCheck &) = default;
};

// A folder "DCIM" at the root tells at once; otherwise a video file within three levels does, if it is among the first
// 400 entries, so that a huge disk is soon done with. Hidden files, the inside of packages and links are left alone.
// An unreadable folder counts as empty. Says no when stopped. Any thread but the main one: the volume may be slow.
[[nodiscard]] FootageCheck looksLikeFootage(const FileUrl &volume, const std::stop_token &stop = {});

} // namespace larkspan
