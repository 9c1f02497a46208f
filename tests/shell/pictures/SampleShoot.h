#pragma once

#include <memory>
#include <string>
#include <vector>

#include "core/engine/SortSeams.h"

namespace larkspan::test {

// A house of two dozen clips, drawn: what its files are called, and what the camera and the models say of each. Some
// are clear, some torn, one shows two rooms, one nothing.
std::vector<std::string> sampleNames();
ClipPtr probeSample(const FileUrl &url);
Frames framesOfSample(const MediaClip &clip);
std::shared_ptr<const FrameClassifier> makeSampleClassifier();

} // namespace larkspan::test
