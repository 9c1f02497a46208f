#pragma once

#include "classify/FaceDetector.h"
#include "classify/ObjectDetector.h"
#include "classify/PoseDetector.h"

namespace larkspan {

// The networks of the local tier: loaded once (some tens of milliseconds), then shared by every thread.
class VisionModels
{
public:
    // Reads objects.onnx, pose.onnx and face.onnx. The error names the first file that is missing or no good.
    [[nodiscard]] static tl::expected<std::shared_ptr<const VisionModels>, ModelError> load(
        const std::filesystem::path &folder);
    // From where the program keeps them: beside it, in ../share/larkspan/models, or in the folder it was built with.
    [[nodiscard]] static tl::expected<std::shared_ptr<const VisionModels>, ModelError> load();

    [[nodiscard]] const ObjectDetector &objects() const { return m_objects; }
    [[nodiscard]] const PoseDetector &pose() const { return m_pose; }
    [[nodiscard]] const FaceDetector &face() const { return m_face; }

private:
    VisionModels(ObjectDetector objects, PoseDetector pose, FaceDetector face);

    ObjectDetector m_objects;
    PoseDetector m_pose;
    FaceDetector m_face;
};

} // namespace larkspan
