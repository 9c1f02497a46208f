#include "classify/VisionModels.h"

#include "core/ShippedFiles.h"

namespace larkspan {

VisionModels::VisionModels(ObjectDetector objects, SceneNetwork scene, PoseDetector pose, FaceDetector face,
                           RoomHead rooms)
    : m_objects(std::move(objects))
    , m_scene(std::move(scene))
    , m_pose(std::move(pose))
    , m_face(std::move(face))
    , m_rooms(std::move(rooms))
{}

tl::expected<std::shared_ptr<const VisionModels>, ModelError> VisionModels::load(const std::filesystem::path &folder)
{
    auto objects = ObjectDetector::load(folder / "objects.onnx");
    if (!objects) {
        return tl::unexpected(objects.error());
    }
    auto scene = SceneNetwork::load(folder / "scene.onnx");
    if (!scene) {
        return tl::unexpected(scene.error());
    }
    auto pose = PoseDetector::load(folder / "pose.onnx");
    if (!pose) {
        return tl::unexpected(pose.error());
    }
    auto face = FaceDetector::load(folder / "face.onnx");
    if (!face) {
        return tl::unexpected(face.error());
    }
    auto rooms = RoomHead::load(folder / "rooms.head");
    if (!rooms) {
        return tl::unexpected(rooms.error());
    }
    return std::shared_ptr<const VisionModels>(new VisionModels(std::move(*objects), std::move(*scene),
                                                                std::move(*pose), std::move(*face), std::move(*rooms)));
}

tl::expected<std::shared_ptr<const VisionModels>, ModelError> VisionModels::load()
{
    return load(shippedFiles() / "models");
}

} // namespace larkspan
