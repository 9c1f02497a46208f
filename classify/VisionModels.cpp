#include "classify/VisionModels.h"

namespace larkspan {

namespace {

std::filesystem::path modelFolder()
{
    std::error_code error;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
    for (const auto &folder : {program / "models", program / "../share/larkspan/models"}) {
        if (!program.empty() && std::filesystem::exists(folder / "objects.onnx", error)) {
            return folder;
        }
    }
    return LARKSPAN_MODELS;
}

} // namespace

VisionModels::VisionModels(ObjectDetector objects, PoseDetector pose, FaceDetector face, RoomHead rooms)
    : m_objects(std::move(objects))
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
    return std::shared_ptr<const VisionModels>(
        new VisionModels(std::move(*objects), std::move(*pose), std::move(*face), std::move(*rooms)));
}

tl::expected<std::shared_ptr<const VisionModels>, ModelError> VisionModels::load()
{
    return load(modelFolder());
}

} // namespace larkspan
