#pragma once

#include "core/bins/Classification.h"
#include "core/clips/FrameAnalysis.h"
#include "core/clips/MediaClip.h"
#include "core/settings/SortOptions.h"

namespace larkspan {

// Returns the bins of a clip by its evidence. Its file name and camera say whether a drone shot it.
// Reads tagOpenPlanTwice and keepDroneExclusive.
Classification classification(const FrameAnalysis &analysis, const MediaClip &clip, const SortOptions &options);

// A plain search for the names that drones leave in file names and metadata, without word boundaries: "DEVON_HOUSE.MOV"
// is taken for one, which is accepted.
bool isDroneClip(const QString &fileName, const QString &cameraModel);

// Marks a clip that the editor should look at, with the reason in words. Reads sendUnsureToReview.
void applyReviewFlags(MediaClip &clip, const SortOptions &options);

} // namespace larkspan
