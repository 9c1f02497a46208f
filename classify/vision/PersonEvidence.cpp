#include "classify/vision/PersonEvidence.h"

#include <algorithm>

namespace larkspan::PersonEvidence {

namespace {

// Below either the person is too far away, or only a part of one. In shares of the frame.
constexpr double leastArea = 0.03;
constexpr double leastHeight = 0.2;
constexpr float sureJoint = 0.4f;
// Number of nose, eyes and ears that have to be sure. Hands and legs have none.
constexpr std::ptrdiff_t headJoints = 3;

// The number of joints from first on that are sure.
std::ptrdiff_t sureJoints(const BodyPose &pose, std::size_t first, std::size_t count)
{
    return std::ranges::count_if(std::span(pose.confidence).subspan(first, count),
                                 [](float confidence) { return confidence >= sureJoint; });
}

} // namespace

bool isPresent(const HumanObservation &human, const BodyPose &pose, std::span<const DetectedFace> faces)
{
    const auto &box = human.boundingBox;
    if (box.width() * box.height() < leastArea || box.height() < leastHeight) {
        return false;
    }
    const bool hasHead = sureJoints(pose, BodyPose::nose, 5) >= headJoints;
    const bool hasTrunk = sureJoints(pose, BodyPose::leftShoulder, 2) > 0 && sureJoints(pose, BodyPose::leftHip, 2) > 0;
    return hasHead && (hasTrunk || facesIn(box, faces) > 0);
}

bool showsPerson(std::span<const Confirmation> frames)
{
    const auto confirming = std::ranges::count_if(frames, [](const auto &frame) { return !frame.people.empty(); });
    return 2 * confirming > std::ssize(frames);
}

int facesIn(const QRectF &box, std::span<const DetectedFace> faces)
{
    return static_cast<int>(
        std::ranges::count_if(faces, [&](const DetectedFace &face) { return box.contains(face.box.center()); }));
}

} // namespace larkspan::PersonEvidence
