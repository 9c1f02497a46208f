#pragma once

#include <span>

#include "core/FeaturePrint.h"

namespace larkspan {

// The print of a frame: the means of what the object detector saw (ObjectDetector::Result::features), brought to the
// units of the splitting rules. Null if the features are of another length or say nothing (all zero).
[[nodiscard]] FeaturePrintPtr pooledPrint(std::span<const float> features);

} // namespace larkspan
