#pragma once

#include <span>

#include "classify/vision/ObjectDetector.h"
#include "classify/vision/VisionRequests.h"

// The names of the detector's objects in the taxonomy of the bin table, and the rooms that each is evidence of.
namespace larkspan::ObjectEvidence {

// The detector's number for a person.
inline constexpr int personKind = 0;

// One observation per identifier, its confidence that of the object that speaks loudest for it:
// - an object that is small in the frame counts less, down to half;
// - books, vases and plants stand in every room, so they count only where they are what the frame shows;
// - some things say less beside others: a sink beside an oven is no sign of a bathroom.
[[nodiscard]] std::vector<ClassificationObservation> observations(std::span<const DetectedObject> objects);

// Every identifier that an observation can carry, in the order of the detector's kinds.
[[nodiscard]] std::vector<QString> identifiers();

} // namespace larkspan::ObjectEvidence
