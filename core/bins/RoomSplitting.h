#pragma once

#include <map>
#include <optional>
#include <span>
#include <vector>

#include "core/clips/MediaClip.h"

namespace larkspan {

// Tells repeated rooms apart: clips of one multi-instance bin that show several rooms get numbered bins, "Kitchen 1",
// "Kitchen 2". Changes primaryBin, and marks clips that may be a different room. Clips without a print open a room of
// their own. Quadratic in the clips of one bin.
void splitRepeatedRooms(std::span<const ClipPtr> clips);

// The bin that a numbered room belongs to: "Living Room" for "Living Room 2". None for a name without a number.
std::optional<QString> splitFamily(const QString &bin);

// Closes the gaps that the editor's moves left in numbered bins. A number without a sibling goes. A clip that is tagged
// with such a bin as well is tagged with its new name. Returns the new names by the old ones.
std::map<QString, QString> renumberSplitBins(std::span<const ClipPtr> clips);

} // namespace larkspan
