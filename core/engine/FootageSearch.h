#pragma once

#include <optional>
#include <span>
#include <stop_token>
#include <vector>

#include "core/engine/SortSeams.h"

namespace larkspan {

// Looks for the footage of a reopened shoot where an export may have moved it: under one of the roots, in the folder
// of the clip's bin or else of another bin of the shoot. A file counts as a clip's if its name is the clip's, with or
// without a number, and it has the clip's length, picture, rate and camera, and its date to the day. No file is given
// to two clips. Returns one place for each clip; none for those whose footage is where it is known to be, that
// weren't found, or of which nothing is known to tell them by. Reads the media; not on the main thread. A stop ends it
// between clips.
std::vector<std::optional<FileUrl>> findMovedFootage(std::span<const ClipPtr> clips, std::span<const FileUrl> roots,
                                                     const SortSeams &seams, const std::stop_token &stop);

} // namespace larkspan
