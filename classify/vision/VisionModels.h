#pragma once

#include "classify/vision/FaceDetector.h"
#include "classify/vision/ObjectDetector.h"
#include "classify/vision/PoseDetector.h"
#include "classify/vision/RoomHead.h"
#include "classify/vision/SceneNetwork.h"

namespace larkspan {

// The networks of the local tier: loaded once (some tens of milliseconds), then shared by every thread.
class VisionModels
{
public:
    // Reads objects.onnx, scene.onnx, pose.onnx, face.onnx and rooms.head. The error names the first file that is
    // missing or no good.
    [[nodiscard]] static tl::expected<std::shared_ptr<const VisionModels>, ModelError> load(
        const std::filesystem::path &folder);
    // From where the program keeps them.
    [[nodiscard]] static tl::expected<std::shared_ptr<const VisionModels>, ModelError> load();
    // Returns the folder models in shippedFiles().
    [[nodiscard]] static std::filesystem::path shippedFolder();
    // Returns the first of the files, or the inference engine, that can't be opened; none of them is read.
    [[nodiscard]] static std::optional<ModelError> findMissing(const std::filesystem::path &folder);

    [[nodiscard]] const ObjectDetector &objects() const { return m_objects; }
    [[nodiscard]] const SceneNetwork &scene() const { return m_scene; }
    [[nodiscard]] const PoseDetector &pose() const { return m_pose; }
    [[nodiscard]] const FaceDetector &face() const { return m_face; }
    [[nodiscard]] const RoomHead &rooms() const { return m_rooms; }

private:
    VisionModels(ObjectDetector objects, SceneNetwork scene, PoseDetector pose, FaceDetector face, RoomHead rooms);

    ObjectDetector m_objects;
    SceneNetwork m_scene;
    PoseDetector m_pose;
    FaceDetector m_face;
    RoomHead m_rooms;
};

} // namespace larkspan
