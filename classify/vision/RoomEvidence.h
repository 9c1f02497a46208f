#pragma once

#include "classify/vision/RoomHead.h"

// Scores one frame: rooms from the classifier head, objects from the detector.
namespace larkspan::RoomEvidence {

// Returns the head's scenes and the detector's objects as one list. An object's confidence is multiplied by the head's
// trust in the object's bin, so that a bed seen through a door counts for little in a bathroom. People, and objects
// that belong to no bin, keep theirs. An identifier in both lists gets the larger confidence.
[[nodiscard]] std::vector<ClassificationObservation> merged(const RoomHead::Reading &place,
                                                            std::vector<ClassificationObservation> objects);

// Returns every identifier that a merged observation can carry, each once.
[[nodiscard]] std::vector<QString> identifiers(const RoomHead &head);

} // namespace larkspan::RoomEvidence
