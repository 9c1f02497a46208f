#pragma once

#include <span>

#include "classify/vision/FaceDetector.h"
#include "classify/vision/PoseDetector.h"
#include "classify/vision/VisionRequests.h"

// Tells someone who presents, stands or walks from what a detector takes for a person: a cushion, a hand, a staircase,
// a passer-by far away, a face on a wall.
namespace larkspan::PersonEvidence {

// Evidence of people in one frame.
struct Confirmation
{
    std::vector<HumanObservation> people; // those that pose and face confirm
    int faces = 0;                        // theirs
};

// Returns whether the box holds a person who is near enough to matter, by its size and by the joints and faces in it.
[[nodiscard]] bool isPresent(const HumanObservation &human, const BodyPose &pose, std::span<const DetectedFace> faces);

// Returns whether a clip of these frames shows a person: more than half of them confirm one.
[[nodiscard]] bool showsPerson(std::span<const Confirmation> frames);

// The number of faces whose middle is inside the box. A face outside every body is one on a wall or a screen.
[[nodiscard]] int facesIn(const QRectF &box, std::span<const DetectedFace> faces);

} // namespace larkspan::PersonEvidence
