#pragma once

#include "classify/vision/RoomHead.h"

// What a frame shows, of the head's word for the place and the detector's for the things in it.
namespace larkspan::RoomEvidence {

// The scenes, and the objects as far as the place bears them out: a bed seen through a door says little in a bathroom,
// a plant little in a kitchen. People, and things that belong to no bin, are left as they are. Of an identifier that
// both know the larger confidence counts.
[[nodiscard]] std::vector<ClassificationObservation> merged(const RoomHead::Reading &place,
                                                            std::vector<ClassificationObservation> objects);

// Every identifier that a merged observation can carry, each once.
[[nodiscard]] std::vector<QString> identifiers(const RoomHead &head);

} // namespace larkspan::RoomEvidence
