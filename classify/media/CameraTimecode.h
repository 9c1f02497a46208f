#pragma once

#include <optional>

#include "core/clips/Timecode.h"

namespace larkspan {

class MediaFile;

// The timecode of a clip's first frame: from its timecode track, else from the container (an MXF has it there) or the
// video track, else from the first group of pictures of an MPEG-2 stream. None if the file has none.
std::optional<Timecode> cameraTimecode(MediaFile &file);

} // namespace larkspan
