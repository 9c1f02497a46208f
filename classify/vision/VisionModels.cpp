#include "classify/vision/VisionModels.h"

#include <fstream>

#include "classify/vision/InferenceEngine.h"
#include "core/files/ShippedFiles.h"

namespace larkspan {

namespace {

constexpr const char *objectsFile = "objects.onnx";
constexpr const char *sceneFile = "scene.onnx";
constexpr const char *poseFile = "pose.onnx";
constexpr const char *faceFile = "face.onnx";
constexpr const char *roomsFile = "rooms.head";

} // namespace

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
    auto objects = ObjectDetector::load(folder / objectsFile);
    if (!objects) {
        return tl::unexpected(objects.error());
    }
    auto scene = SceneNetwork::load(folder / sceneFile);
    if (!scene) {
        return tl::unexpected(scene.error());
    }
    auto pose = PoseDetector::load(folder / poseFile);
    if (!pose) {
        return tl::unexpected(pose.error());
    }
    auto face = FaceDetector::load(folder / faceFile);
    if (!face) {
        return tl::unexpected(face.error());
    }
    auto rooms = RoomHead::load(folder / roomsFile);
    if (!rooms) {
        return tl::unexpected(rooms.error());
    }
    return std::shared_ptr<const VisionModels>(new VisionModels(std::move(*objects), std::move(*scene),
                                                                std::move(*pose), std::move(*face), std::move(*rooms)));
}

tl::expected<std::shared_ptr<const VisionModels>, ModelError> VisionModels::load()
{
    return load(shippedFolder());
}

std::filesystem::path VisionModels::shippedFolder()
{
    return shippedFiles() / "models";
}

std::optional<ModelError> VisionModels::findMissing(const std::filesystem::path &folder)
{
    for (const auto &file : {folder / objectsFile, folder / sceneFile, folder / poseFile, folder / faceFile,
                             folder / roomsFile, shippedInferenceEngine()}) {
        std::error_code error;
        if (!std::filesystem::is_regular_file(file, error) || !std::ifstream(file)) {
            return ModelError{.reason = ModelError::Reason::Missing, .file = file, .detail = {}};
        }
    }
    return std::nullopt;
}

} // namespace larkspan
